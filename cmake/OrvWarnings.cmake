# SPDX-License-Identifier: Apache-2.0

# The warnings of all our own code: an interface target that every target of ours links.
#
# Library headers come in as SYSTEM includes, so only our own lines are judged.

option(ORV_WARNINGS_AS_ERRORS "Stop the build at the first compiler warning" OFF)

add_library(orv_warnings INTERFACE)
target_compile_options(orv_warnings INTERFACE -Wall -Wextra -Wpedantic
    $<$<NOT:$<BOOL:${ORV_JOINED_SOURCES}>>:-Wshadow> -Wconversion
    $<$<CXX_COMPILER_ID:Clang>:-Wreserved-identifier>)

if(ORV_WARNINGS_AS_ERRORS)
    target_compile_options(orv_warnings INTERFACE -Werror)
    # GCC checks sizes after inlining, and reports paths that cannot occur in code with sanitizers or in joined sources.
    if(ORV_JOINED_SOURCES AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        target_compile_options(orv_warnings INTERFACE -Wno-error=stringop-overflow -Wno-error=stringop-overread
            -Wno-error=array-bounds -Wno-error=restrict -Wno-error=maybe-uninitialized -Wno-error=null-dereference
            -Wno-error=free-nonheap-object)
    endif()
endif()
