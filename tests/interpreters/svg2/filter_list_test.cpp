// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/filter_list.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using svg2::FilterFunction;

/// The entries as kind, amount, deviation, offset and colour.
std::string Read(std::string_view text) {
    std::vector<FilterFunction> list;
    if (!svg2::ReadFilterList(text, {}, list)) return "unreadable";
    std::string written;
    for (const FilterFunction& f : list) {
        written += std::to_string(static_cast<int>(f.kind)) + ":";
        char numbers[100];
        std::snprintf(numbers, sizeof numbers, "%g,%g,%g,%g", f.amount, f.deviation, f.dx, f.dy);
        written += f.kind == FilterFunction::Kind::kReference ? std::string(f.reference) : numbers;
        if (f.colour) written += ",#" + std::to_string(f.colour->red);
        written += ";";
    }
    return written;
}

TEST(FilterListTest, ReadsFunctionsAndReferences) {
    const struct {
        const char *text, *list;
    } kRows[] = {
        {"none", ""},
        {"url(#a)", "0:a;"},
        {" url( '#a b' ) ", "0:a b;"},
        {"url(other.svg#a)", "0:;"},
        {"blur()", "1:0,0,0,0;"},
        {"BLUR(2px)", "1:0,2,0,0;"},
        {"blur(2)", "1:0,2,0,0;"},
        {"blur(-2px)", "unreadable"},
        {"blur(2%)", "unreadable"},
        {"blur(2px 3px)", "unreadable"},
        {"brightness(150%)", "2:1.5,0,0,0;"},
        {"brightness(-1)", "unreadable"},
        {"contrast()", "3:1,0,0,0;"},
        {"drop-shadow(1px 2px)", "4:0,0,1,2;"},
        {"drop-shadow(1px 2px 3px)", "4:0,3,1,2;"},
        {"drop-shadow(#070809 1px 2px)", "4:0,0,1,2,#7;"},
        {"drop-shadow(1px 2px 3px rgb(9,8,7))", "4:0,3,1,2,#9;"},
        {"drop-shadow(1px 2px currentColor)", "4:0,0,1,2;"},
        {"drop-shadow(1px)", "unreadable"},
        {"drop-shadow(1px,2px)", "unreadable"},
        {"drop-shadow(1px 2px,3px)", "unreadable"},
        {"drop-shadow()", "unreadable"},
        {"drop-shadow(1px 2px -3px)", "unreadable"},
        {"drop-shadow(red 1px 2px red)", "unreadable"},
        {"grayscale(7)", "5:1,0,0,0;"},
        {"hue-rotate(.5turn)", "6:180,0,0,0;"},
        {"hue-rotate()", "6:0,0,0,0;"},
        {"hue-rotate(0)", "6:0,0,0,0;"},
        {"hue-rotate(9)", "unreadable"},
        {"hue-rotate(9deg)", "6:9,0,0,0;"},
        {"invert(30%)", "7:0.3,0,0,0;"},
        {"opacity(2)", "8:1,0,0,0;"},
        {"saturate(3)", "9:3,0,0,0;"},
        {"sepia(.5) url(#a)blur(1px)", "10:0.5,0,0,0;0:a;1:0,1,0,0;"},
        {"sepia(.5) none", "unreadable"},
        {"unheard(1)", "unreadable"},
        {"blur(1px", "unreadable"},
        {"", "unreadable"},
    };
    for (const auto& row : kRows) EXPECT_EQ(Read(row.text), row.list) << row.text;
}

}  // namespace
