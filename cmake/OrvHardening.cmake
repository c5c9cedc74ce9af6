# SPDX-License-Identifier: Apache-2.0

# Hardening: an interface target that every target of ours links, so that a defect in reading hostile input is more likely
# to end the process than to hand it over. packaging/check-hardening holds what was built to it.
#
#   stack protector           a function that writes past its arrays is ended before it returns
#   _FORTIFY_SOURCE           calls such as memcpy end the process when they pass a buffer of known size
#   stack clash protection    large frames touch every page, so that none jumps over the guard
#   control flow protection   every target of an indirect call is marked, and returns agree with the shadow stack (CET),
#                             where the compiler, the processor and the system have it
#   RELRO, BIND_NOW           tables of addresses are complete and read-only before main
#   no executable stack, PIE

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)
include(CheckPIESupported)

option(ORV_HARDENING "Compile and link with the protections of cmake/OrvHardening.cmake" ON)

add_library(orv_hardening INTERFACE)
set(ORV_IS_FORTIFIED OFF)
if(NOT ORV_HARDENING)
    return()
endif()

check_pie_supported(LANGUAGES CXX)

foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
    string(MAKE_C_IDENTIFIER "ORV_HAS${flag}" has)
    check_cxx_compiler_flag(${flag} ${has})
    if(${has})
        target_compile_options(orv_hardening INTERFACE ${flag})
    endif()
endforeach()

# Needs optimisation; and sanitizers check more closely.
string(TOUPPER "${CMAKE_BUILD_TYPE}" orv_build_type)
if("${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_${orv_build_type}}" MATCHES "-O[123s]" AND NOT ORV_SANITIZE)
    # Some compilers define it by default, at a lower level.
    target_compile_options(orv_hardening INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3)
    set(ORV_IS_FORTIFIED ON)
endif()

target_link_options(orv_hardening INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)

# The C library's startup code is not marked as compatible with the shadow stack, although it is, and the linker would
# drop the mark for the whole program. (It has no marks for indirect branch targets either, and would need them: -z ibt
# would be wrong.)
check_linker_flag(CXX -Wl,-z,shstk ORV_HAS_z_shstk)
if(ORV_HAS_z_shstk)
    target_link_options(orv_hardening INTERFACE -Wl,-z,shstk)
endif()
