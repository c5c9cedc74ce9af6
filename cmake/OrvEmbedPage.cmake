# SPDX-License-Identifier: Apache-2.0

# Puts a page, its style and its script together, and writes them as constants of C++: the page up to the place of
# its data, and behind it. Runs as a script when the sources change:
#     cmake -DPAGE=x.html -DSTYLE=x.css -DSCRIPT=x.js -DOUTPUT=x.cpp -P OrvEmbedPage.cmake
# In the page, /*STYLE*/ and /*SCRIPT*/ stand for the files, SCRIPT_HASH for the script's SHA-256 as a policy of
# content security has it, and DATA for what the program fills in.

# Base64 of bytes given as hexadecimal digits.
function(base64_of_hex hex result)
    set(alphabet "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/")
    set(text "")
    while(NOT hex STREQUAL "")
        string(LENGTH "${hex}" digits)
        if(digits GREATER 6)
            set(digits 6)
        endif()
        string(SUBSTRING "${hex}" 0 ${digits} group)
        string(SUBSTRING "${hex}" ${digits} -1 hex)
        math(EXPR characters "${digits} / 2 + 1")
        math(EXPR padding "6 - ${digits}")
        string(REPEAT "0" ${padding} zeros)
        math(EXPR bits "0x${group}${zeros}")
        set(shift 18)
        foreach(place RANGE 1 4)
            if(place GREATER characters)
                string(APPEND text "=")
            else()
                math(EXPR index "(${bits} >> ${shift}) & 63")
                string(SUBSTRING "${alphabet}" ${index} 1 character)
                string(APPEND text "${character}")
            endif()
            math(EXPR shift "${shift} - 6")
        endforeach()
    endwhile()
    set(${result} "${text}" PARENT_SCOPE)
endfunction()

file(READ "${PAGE}" page)
file(READ "${STYLE}" style)
file(READ "${SCRIPT}" script)
if(script MATCHES "</script|<!--" OR style MATCHES "</style")
    message(FATAL_ERROR "${SCRIPT} or ${STYLE} ends its own element")
endif()
string(SHA256 hash "${script}")
base64_of_hex("${hash}" hash)
string(REPLACE "SCRIPT_HASH" "sha256-${hash}" page "${page}")
string(REPLACE "/*STYLE*/" "${style}" page "${page}")
string(REPLACE "/*SCRIPT*/" "${script}" page "${page}")

string(FIND "${page}" "<!--DATA-->" place)
string(LENGTH "<!--DATA-->" length)
string(SUBSTRING "${page}" 0 ${place} head)
math(EXPR behind "${place} + ${length}")
string(SUBSTRING "${page}" ${behind} -1 tail)

file(WRITE "${OUTPUT}.new" "// Made by OrvEmbedPage.cmake.\n#include \"${HEADER}\"\n\n"
    "const std::string_view kInspectorHead = R\"ORVPAGE(${head})ORVPAGE\";\n"
    "const std::string_view kInspectorTail = R\"ORVPAGE(${tail})ORVPAGE\";\n")
file(RENAME "${OUTPUT}.new" "${OUTPUT}")
