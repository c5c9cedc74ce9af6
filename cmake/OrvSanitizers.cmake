# SPDX-License-Identifier: Apache-2.0

# Sanitizers: an interface target that every target of ours links, empty unless ORV_SANITIZE names some.
#
#   -DORV_SANITIZE="address;undefined"   as in the preset "asan"

set(ORV_SANITIZE "" CACHE STRING "Sanitizers to build with, such as \"address;undefined\"")

set(ORV_SANITIZE_WITHOUT "" CACHE STRING "Checks of these sanitizers that are left out")

add_library(orv_sanitizers INTERFACE)

if(ORV_SANITIZE)
    string(REPLACE ";" "," orv_sanitizer_list "${ORV_SANITIZE}")

    # A finding ends the run with a failure: a report that lets the test pass would be overlooked.
    set(orv_sanitizer_flags -fsanitize=${orv_sanitizer_list} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    if(ORV_SANITIZE_WITHOUT)
        string(REPLACE ";" "," orv_left_out "${ORV_SANITIZE_WITHOUT}")
        list(APPEND orv_sanitizer_flags -fno-sanitize=${orv_left_out})
    endif()
    target_compile_options(orv_sanitizers INTERFACE ${orv_sanitizer_flags})
    target_link_options(orv_sanitizers INTERFACE ${orv_sanitizer_flags})

    # Tests that count bytes or seconds ask for this and allow for the sanitizers' own needs.
    target_compile_definitions(orv_sanitizers INTERFACE ORV_SANITIZED=1)
endif()

# The fuzzers see which code ran only where this was compiled in; each links -fsanitize=fuzzer itself.
function(orv_instrument_for_fuzzing)
    if(ORV_BUILD_FUZZ)
        orv_targets_below(targets ${ARGN})
        foreach(target ${targets})
            target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
        endforeach()
    endif()
endfunction()
