// SPDX-License-Identifier: Apache-2.0

// Lengths: compares each reader with its plain transcription.

#include <string>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/same_numbers.h"
#include "interpreters/svg/values/length.h"
#include "tests/interpreters/svg/values/naive_values.h"
#include "tests/support/page_state.h"

namespace {

using Reader = int (*)(const SvgDrawState&, std::string_view, double&);
using PlainReader = int (*)(const SvgDrawState&, std::string, double&);

void Compare(Reader read, PlainReader readPlainly, const SvgDrawState& state, std::string_view text) {
    double a = -7.0, b = -7.0;
    Require(read(state, text, a) == readPlainly(state, std::string(text), b));
    Require(SameNumber(a, b));
}

const FuzzTarget kTarget("lengths", [](std::string_view text) {
    for (const int flip : {0, 1}) {
        const PageState state(300.0, 407.7, flip);
        Compare(ParseLength, naive::Length, state, text);
        Compare(ParseHorizontalLength, naive::HorizontalLength, state, text);
        Compare(ParseVerticalLength, naive::VerticalLength, state, text);
        Compare(ParseVerticalCoordinate, naive::VerticalCoordinate, state, text);
    }
});

}  // namespace
