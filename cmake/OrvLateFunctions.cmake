# SPDX-License-Identifier: Apache-2.0

# Libraries of C that a program loads when it first calls them: instead of the libraries, the program links small
# functions of the same names, which jump to addresses of a table (apps/orvprint/linked/late_libraries.h). Which functions
# that are is read from the object files that call them and from the libraries.
#
#   orv_link_late(PROGRAM ARCHIVE LIBRARY...)   PROGRAM links ARCHIVE, which calls functions of these libraries
#
# It runs as a script to make the functions:
#     cmake -DNM=nm -DREADELF=readelf -DCALLERS=a.a -DLIBRARIES="x.so;y.so" -DOUTPUT=x.cpp -P OrvLateFunctions.cmake

if(NOT CMAKE_SCRIPT_MODE_FILE)
    set(orv_late_script ${CMAKE_CURRENT_LIST_FILE})

    function(orv_link_late program archive)
        if(NOT CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64)$")
            target_sources(${program} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR}/linked/no_late_functions.cpp)
            target_link_libraries(${program} PRIVATE ${ARGN})
            return()
        endif()
        set(source ${CMAKE_CURRENT_BINARY_DIR}/late_functions.cpp)
        add_custom_command(
            OUTPUT ${source}
            COMMAND ${CMAKE_COMMAND} -DNM=${CMAKE_NM} -DREADELF=${CMAKE_READELF} "-DCALLERS=$<TARGET_FILE:${archive}>"
                "-DLIBRARIES=${ARGN}" -DOUTPUT=${source} -P ${orv_late_script}
            DEPENDS ${archive} ${orv_late_script}
            COMMENT "Making functions for libraries that are loaded late"
            VERBATIM)
        target_sources(${program} PRIVATE ${source})
    endfunction()
    return()
endif()

cmake_minimum_required(VERSION 3.25)

# Names of undefined, or of defined, functions in the output of nm.
function(names_of result file options types)
    execute_process(COMMAND ${NM} -P ${options} ${file}
        OUTPUT_VARIABLE lines ERROR_QUIET COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCHALL "[^\n]+\n" lines "${lines}")
    list(FILTER lines INCLUDE REGEX "^[^ ]+ [${types}]( |\n)")
    list(FILTER lines EXCLUDE REGEX "^_Z")
    list(TRANSFORM lines REPLACE "^([^ @]+).*" "\\1")
    list(REMOVE_DUPLICATES lines)
    list(SORT lines)
    set(${result} "${lines}" PARENT_SCOPE)
endfunction()

names_of(called "${CALLERS}" "-u" "Uw")
set(place 0)
set(libraries "")
set(flags "")
set(functions "")
foreach(library IN LISTS LIBRARIES)
    names_of(defined "${library}" "-D;--defined-only" "TWi")
    set(found ${called})
    list(FILTER found EXCLUDE REGEX "^$")
    set(used "")
    foreach(name IN LISTS found)
        if(name IN_LIST defined)
            list(APPEND used ${name})
        endif()
    endforeach()
    if(NOT used)
        continue()
    endif()
    list(REMOVE_ITEM called ${used})
    execute_process(COMMAND ${READELF} -d ${library} OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
    if(NOT dynamic MATCHES "\\(SONAME\\)[^\n]*\\[([^]]+)\\]")
        message(FATAL_ERROR "${library} has no name to be loaded by")
    endif()
    string(APPEND libraries "    {\"${CMAKE_MATCH_1}\",\n")
    foreach(name IN LISTS used)
        string(APPEND libraries "     \"${name}\\0\"\n")
        string(APPEND functions "    orvLate ${name}, ${place}\n")
        math(EXPR place "${place} + 1")
    endforeach()
    list(LENGTH used count)
    math(EXPR first "${place} - ${count}")
    string(APPEND libraries "     ,\n     ${first}},\n")
    string(APPEND flags "false, ")
endforeach()
if(place EQUAL 0)
    message(FATAL_ERROR "nothing in ${CALLERS} calls any of ${LIBRARIES}")
endif()

# Argument registers are saved while the library is loaded, and the stack is aligned as the called function expects: to
# 16 bytes at the call.
file(WRITE "${OUTPUT}.new" "// Made by OrvLateFunctions.cmake.
#include \"apps/orvprint/linked/late_functions.h\"

const LateLibrary kLateLibraries[] = {
${libraries}};
const std::size_t kLateLibraryCount = sizeof kLateLibraries / sizeof *kLateLibraries;
bool orvIsLateLoaded[] = {${flags}};
const std::size_t kLateTableSize = (${place} * sizeof(void*) + 4095) / 4096 * 4096;

asm(R\"(
    .section .data.rel.ro.orv_late, \"aw\", @progbits
    .balign 4096
    .globl orvLateTable
    .hidden orvLateTable
    .type orvLateTable, @object
orvLateTable:
    .text
    .balign 16
    .type orvLateCommon, @function
orvLateCommon:
    pushq %rax
    pushq %rdi
    pushq %rsi
    pushq %rdx
    pushq %rcx
    pushq %r8
    pushq %r9
    pushq %r10
    subq $128, %rsp
    movups %xmm0, (%rsp)
    movups %xmm1, 16(%rsp)
    movups %xmm2, 32(%rsp)
    movups %xmm3, 48(%rsp)
    movups %xmm4, 64(%rsp)
    movups %xmm5, 80(%rsp)
    movups %xmm6, 96(%rsp)
    movups %xmm7, 112(%rsp)
    movq 192(%rsp), %rdi
    call orvResolveLateFunction
    movq %rax, %r11
    movups (%rsp), %xmm0
    movups 16(%rsp), %xmm1
    movups 32(%rsp), %xmm2
    movups 48(%rsp), %xmm3
    movups 64(%rsp), %xmm4
    movups 80(%rsp), %xmm5
    movups 96(%rsp), %xmm6
    movups 112(%rsp), %xmm7
    addq $128, %rsp
    popq %r10
    popq %r9
    popq %r8
    popq %rcx
    popq %rdx
    popq %rsi
    popq %rdi
    popq %rax
    addq $8, %rsp
    jmp *%r11
    .size orvLateCommon, . - orvLateCommon

    .macro orvLate name, place
    .globl \\name
    .hidden \\name
    .type \\name, @function
    .balign 16
\\name:
    endbr64
    jmp *orvLateTable+8*\\place(%rip)
    .size \\name, . - \\name
.Llate\\place:
    endbr64
    pushq $\\place
    jmp orvLateCommon
    .pushsection .data.rel.ro.orv_late, \"aw\", @progbits
    .quad .Llate\\place
    .popsection
    .endm

${functions}
    .section .data.rel.ro.orv_late, \"aw\", @progbits
    .size orvLateTable, . - orvLateTable
    .balign 4096
    .text
)\");
")
file(RENAME "${OUTPUT}.new" "${OUTPUT}")
