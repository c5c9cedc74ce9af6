# SPDX-License-Identifier: Apache-2.0

# Headers that are read once for all sources: most of what a small source costs is the standard library, and of a test
# GoogleTest. Off by default, so that a source that forgets an include does not compile; the presets for tests turn it on.
#
#   orv_precompile(KIND FOLDER...)   the targets of these folders share the headers of KIND, "product" or "tests"
#   orv_reuse_headers(KIND TARGET...)  so do these targets, which must be compiled with the same options

option(ORV_PRECOMPILED_HEADERS "Compile the headers of libraries once (Clang)" OFF)

set(orv_product_headers
    <algorithm> <array> <cmath> <cstdint> <cstdio> <cstdlib> <cstring> <functional> <limits> <map> <memory> <mutex>
    <optional> <set> <string> <string_view> <thread> <tuple> <unordered_map> <utility> <variant> <vector>)
set(orv_tests_headers ${orv_product_headers}
    <chrono> <filesystem> <fstream> <iostream> <random> <sstream> <gmock/gmock.h> <gtest/gtest.h>)

set(orv_product_header_libraries)
set(orv_tests_header_libraries GTest::gmock)

# clang-tidy needs these files of the build, because it reads sources as the compiler does.
add_custom_target(orv_precompiled)

function(orv_precompile kind)
    if(NOT ORV_PRECOMPILED_HEADERS)
        return()
    endif()
    orv_targets_below(targets ${ARGN})
    # Programs are compiled with other options than libraries, so they cannot share headers.
    set(source ${CMAKE_BINARY_DIR}/precompiled/${kind}.cpp)
    file(CONFIGURE OUTPUT ${source} CONTENT "int main() { return 0; }\n")
    add_library(orv_${kind}_library_headers OBJECT ${source})
    add_executable(orv_${kind}_program_headers EXCLUDE_FROM_ALL ${source})
    set_target_properties(orv_${kind}_program_headers PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/precompiled)
    foreach(form library program)
        target_precompile_headers(orv_${kind}_${form}_headers PRIVATE ${orv_${kind}_headers})
        target_link_libraries(orv_${kind}_${form}_headers PRIVATE ${orv_${kind}_header_libraries})
        add_dependencies(orv_precompiled orv_${kind}_${form}_headers)
    endforeach()

    list(REMOVE_ITEM targets orv_lone_headers orv_fault_shim)
    orv_reuse_headers(${kind} ${targets})
endfunction()

function(orv_reuse_headers kind)
    foreach(target ${ARGN})
        get_target_property(type ${target} TYPE)
        set(form library)
        if(type STREQUAL "EXECUTABLE")
            set(form program)
        endif()
        set_property(TARGET ${target} PROPERTY PRECOMPILE_HEADERS_REUSE_FROM orv_${kind}_${form}_headers)
    endforeach()
endfunction()
