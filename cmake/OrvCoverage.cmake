# Counting which lines run: an interface target that every target of ours links, empty unless ORV_COVERAGE is on (GCC).
#
# What ran is added to the .gcda files beside the objects by every process that ends, the command's own included.

option(ORV_COVERAGE "Count which lines run" OFF)

add_library(orv_coverage INTERFACE)

if(ORV_COVERAGE)
    # Several threads count the same lines.
    target_compile_options(orv_coverage INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(orv_coverage INTERFACE --coverage)

    # A process that leaves without running the destructors of its libraries asks for the first and runs them: they
    # write the counts. Tests that count bytes or seconds ask for the second.
    target_compile_definitions(orv_coverage INTERFACE ORV_COVERAGE=1 ORV_SANITIZED=1)
endif()
