// SPDX-License-Identifier: Apache-2.0

// Colours: compares the reader with its plain transcription, and runs the paints that use it.

#include <string>

#include "fuzz/support/FuzzTarget.h"
#include "interpreters/svg/style/paint.h"
#include "interpreters/svg/values/colour.h"
#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtImageElt.h"
#include "tests/interpreters/svg/values/naive_values.h"
#include "tests/support/page_state.h"

namespace {

const FuzzTarget kTarget("colours", [](std::string_view text) {
    PageState state(10.0, 10.0);
    unsigned int index = 99;
    int parts[3] = {};
    const bool isColour = naive::Colour(std::string(text), parts);
    Require((ParseColour(state, text, index) == 1) == isColour);
    if (isColour) {
        const auto colour = state.page->GetColourTable()->GetColour(index);
        Require(colour.red == parts[0] && colour.green == parts[1] && colour.blue == parts[2]);
        unsigned int again = 99;
        Require(ParseColour(state, text, again) == 1 && again == index);
    } else {
        Require(index == 99);
    }
    ApplyFillPaint(state, text);
    ApplyStrokePaint(state, text);
});

}  // namespace
