# SPDX-License-Identifier: Apache-2.0

# What `cmake --install` puts where, and what others find it by. Three components: "runtime"; "development" with headers,
# CMake package, pkg-config files and documentation; and "cups", the filter for the print system.
#
#   orv_install_library(TARGET NAME)   a shared library with its header set, found as orvprint::NAME
#   orv_install_c_library(TARGET NAME)  the same with a C interface, whose version is a number of its own
#   orv_install_module(TARGET)         a module that is loaded at run time: beside the libraries, without a version, or in
#                                      the folder ORV_MODULE_FOLDER there
#   orv_install_package(FOLDER FILE...)  the package files, and documentation

include(CMakePackageConfigHelpers)

set(orv_package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/orvprint)
set(orv_header_folder ${CMAKE_INSTALL_INCLUDEDIR}/orvprint)
# Programs keep working with the library as long as this number does not change: the symbol files in debian/ and
# packaging/check-abi enforce it.
set(orv_interface_version 0)

set(ORV_MODULE_FOLDER "" CACHE STRING "Folder of modules within that of the libraries; empty for the same one")

function(orv_install_library target name)
    target_compile_features(${target} PUBLIC cxx_std_20)
    # Usage requirements of our own targets are private.
    get_target_property(linked ${target} INTERFACE_LINK_LIBRARIES)
    list(FILTER linked EXCLUDE REGEX "^orv_")
    set_target_properties(${target} PROPERTIES INTERFACE_LINK_LIBRARIES "${linked}")
    orv_install_versioned(${target} ${name} ${PROJECT_VERSION} ${orv_interface_version})
endfunction()

function(orv_install_c_library target name)
    # Exports nothing of the libraries it consists of.
    set_target_properties(${target} PROPERTIES INTERFACE_LINK_LIBRARIES "")
    orv_install_versioned(${target} ${name} 0.${PROJECT_VERSION_MINOR}.${PROJECT_VERSION_PATCH} 0)
endfunction()

function(orv_install_versioned target name version interface_version)
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${name} VERSION ${version} SOVERSION ${interface_version})
    install(TARGETS ${target} EXPORT orvprint-${name}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
        FILE_SET HEADERS DESTINATION ${orv_header_folder} COMPONENT development)
endfunction()

function(orv_install_module target)
    install(TARGETS ${target}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/${ORV_MODULE_FOLDER} COMPONENT runtime)
endfunction()

function(orv_install_package folder)
    foreach(name platform generators library command)
        install(EXPORT orvprint-${name} NAMESPACE orvprint::
            DESTINATION ${orv_package_folder} COMPONENT development)
    endforeach()
    configure_package_config_file(${CMAKE_SOURCE_DIR}/packaging/orvprint-config.cmake.in
        ${CMAKE_BINARY_DIR}/packaging/orvprint-config.cmake INSTALL_DESTINATION ${orv_package_folder})
    write_basic_package_version_file(${CMAKE_BINARY_DIR}/packaging/orvprint-config-version.cmake
        COMPATIBILITY SameMinorVersion)
    install(FILES
        ${CMAKE_BINARY_DIR}/packaging/orvprint-config.cmake
        ${CMAKE_BINARY_DIR}/packaging/orvprint-config-version.cmake
        DESTINATION ${orv_package_folder} COMPONENT development)

    # Relative to the file, so that an installation can be moved.
    file(RELATIVE_PATH prefix_from_package
        ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
    string(REGEX REPLACE "/$" "" prefix_from_package ${prefix_from_package})
    file(RELATIVE_PATH libraries_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_LIBDIR})
    file(RELATIVE_PATH headers_from_prefix ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR}/orvprint)
    foreach(name orvprint orvprint-generators orvprint-library)
        configure_file(${CMAKE_SOURCE_DIR}/packaging/${name}.pc.in
            ${CMAKE_BINARY_DIR}/packaging/${name}.pc @ONLY)
        install(FILES ${CMAKE_BINARY_DIR}/packaging/${name}.pc
            DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
    endforeach()

    install(FILES ${ARGN} DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
    install(DIRECTORY ${folder} DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development
        PATTERN man EXCLUDE PATTERN api EXCLUDE)
    install(DIRECTORY examples DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
    # Scripts for batch engines; the documentation links to them.
    install(DIRECTORY packaging/batch DESTINATION ${CMAKE_INSTALL_DOCDIR}/packaging COMPONENT development
        USE_SOURCE_PERMISSIONS)
endfunction()
