# SPDX-License-Identifier: Apache-2.0

# The reference of the public headers: `./dev docs` makes it. A test makes it, too, and reads which names are public.
#
#   orv_document(TARGET...)   the targets whose header sets are documented

function(orv_document)
    set(headers)
    foreach(target ${ARGN})
        get_target_property(set ${target} HEADER_SET)
        list(APPEND headers ${set})
    endforeach()
    list(JOIN headers " " orv_public_header_paths)
    configure_file(${CMAKE_SOURCE_DIR}/docs/api/Doxyfile.in ${CMAKE_BINARY_DIR}/api/Doxyfile @ONLY)

    find_program(ORV_DOXYGEN doxygen)
    if(ORV_DOXYGEN)
        add_custom_target(orv_api_docs
            COMMAND ${ORV_DOXYGEN} ${CMAKE_BINARY_DIR}/api/Doxyfile
            COMMENT "Documenting the public headers")
    endif()
endfunction()
