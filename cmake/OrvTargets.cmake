# SPDX-License-Identifier: Apache-2.0

# All our compiled targets in some folders and their subfolders.
function(orv_targets_below result)
    set(found)
    foreach(folder ${ARGN})
        get_property(targets DIRECTORY ${folder} PROPERTY BUILDSYSTEM_TARGETS)
        foreach(target ${targets})
            get_target_property(type ${target} TYPE)
            if(type MATCHES "EXECUTABLE|LIBRARY" AND NOT type STREQUAL "INTERFACE_LIBRARY")
                list(APPEND found ${target})
            endif()
        endforeach()
        get_property(folders DIRECTORY ${folder} PROPERTY SUBDIRECTORIES)
        if(folders)
            orv_targets_below(below ${folders})
            list(APPEND found ${below})
        endif()
    endforeach()
    set(${result} ${found} PARENT_SCOPE)
endfunction()

# For programs of the product in test builds: the command line parser instantiates more templates than everything else
# together, and runs once per process. Without optimisation it compiles in a third of the time. gcc needs the optimiser
# for some of its warnings.
function(orv_compile_programs_quickly)
    if((ORV_SANITIZE OR ORV_COVERAGE) AND CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        orv_targets_below(targets ${ARGN})
        foreach(target ${targets} orv_product_program_headers)
            if(TARGET ${target})
                get_target_property(type ${target} TYPE)
                if(type STREQUAL "EXECUTABLE")
                    target_compile_options(${target} PRIVATE -O0)
                endif()
            endif()
        endforeach()
    endif()
endfunction()

option(ORV_JOINED_SOURCES "Compile several sources of a target as one" OFF)

# Joined sources share includes and template instantiations, which halves the build time. Not for lint, nor for checking
# that each source includes what it needs. Names of one source may shadow those of another, so -Wshadow is off
# (OrvWarnings.cmake).
function(orv_join_sources)
    if(NOT ORV_JOINED_SOURCES)
        return()
    endif()
    find_package(Python3 REQUIRED COMPONENTS Interpreter)
    orv_targets_below(targets ${ARGN})
    foreach(target ${targets})
        get_target_property(sources ${target} SOURCES)
        get_target_property(folder ${target} SOURCE_DIR)
        list(FILTER sources INCLUDE REGEX "\\.cpp$")
        list(TRANSFORM sources PREPEND "${folder}/" REGEX "^[^/]")
        list(FILTER sources EXCLUDE REGEX "^${CMAKE_BINARY_DIR}")
        if(NOT sources)
            continue()
        endif()
        execute_process(COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/cmake/joined_sources.py ${sources}
            OUTPUT_VARIABLE rows OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
        string(REPLACE "\n" ";" rows "${rows}")
        foreach(row ${rows})
            string(REGEX MATCH "^([0-9]+) (.*)$" row "${row}")
            set_source_files_properties(${CMAKE_MATCH_2} TARGET_DIRECTORY ${target}
                PROPERTIES UNITY_GROUP "${CMAKE_MATCH_1}")
        endforeach()
        set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    endforeach()
endfunction()
