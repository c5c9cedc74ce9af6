# SPDX-License-Identifier: Apache-2.0

# Counting which lines run, with Clang: every program and library of ours is built with counters, and adds what ran to
# a file of its own when it ends (tests/support/line_counts.cpp). `./dev coverage` reads these.
#
#   orv_count_lines(FOLDER...)   the targets of these folders count; tests do not, their own lines are of no interest

option(ORV_COVERAGE "Count which lines run (Clang)" OFF)

function(orv_count_lines)
    if(NOT ORV_COVERAGE)
        return()
    endif()
    orv_targets_below(targets ${ARGN})
    foreach(target ${targets})
        # For a process that exits without running the destructors of its libraries.
        target_compile_options(${target} PRIVATE -fprofile-instr-generate -fcoverage-mapping)
        target_compile_definitions(${target} PRIVATE ORV_COVERAGE=1)
    endforeach()
endfunction()

# Tests link the counters, whatever they test.
if(ORV_COVERAGE)
    add_library(orv_line_counts STATIC ${CMAKE_SOURCE_DIR}/tests/support/line_counts.cpp)
    add_link_options(-fprofile-instr-generate)
    link_libraries(orv_line_counts)
endif()
