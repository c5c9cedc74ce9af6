# SPDX-License-Identifier: Apache-2.0

# Sanitizers: an interface target that every target of ours links, empty unless ORV_SANITIZE names some.
#
#   -DORV_SANITIZE="address;undefined"   as in the preset "asan"

set(ORV_SANITIZE "" CACHE STRING "Sanitizers to build with, such as \"address;undefined\"")

set(ORV_SANITIZE_WITHOUT "" CACHE STRING "Checks of these sanitizers that are left out")

add_library(orv_sanitizers INTERFACE)

if(ORV_SANITIZE)
    string(REPLACE ";" "," orv_sanitizer_list "${ORV_SANITIZE}")

    # A finding fails the run: a mere report in a passing test would be overlooked.
    set(orv_sanitizer_flags -fsanitize=${orv_sanitizer_list} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(ORV_SANITIZE_WITHOUT)
        string(REPLACE ";" "," orv_left_out "${ORV_SANITIZE_WITHOUT}")
        list(APPEND orv_sanitizer_flags -fno-sanitize=${orv_left_out})
    endif()
    target_compile_options(orv_sanitizers INTERFACE ${orv_sanitizer_flags})
    target_link_options(orv_sanitizers INTERFACE ${orv_sanitizer_flags})

    # Tests that measure bytes or time use this to allow for the sanitizers' overhead.
    target_compile_definitions(orv_sanitizers INTERFACE ORV_SANITIZED=1)
endif()

# Coverage feedback for the fuzzers; each fuzzer links -fsanitize=fuzzer itself.
function(orv_instrument_for_fuzzing)
    if(ORV_BUILD_FUZZ)
        orv_targets_below(targets ${ARGN})
        foreach(target ${targets})
            target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
        endforeach()
    endif()
endfunction()
