// SPDX-License-Identifier: Apache-2.0

// Style declarations: compares their splitting and the reading of dashes with plain transcriptions, and their
// effect on a state with the properties applied one by one.

#include <string>
#include <vector>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/same_numbers.h"
#include "interpreters/svg/style/paint.h"
#include "interpreters/svg/style/property_table.h"
#include "interpreters/svg/style/style_attribute.h"
#include "tests/interpreters/svg/values/naive_values.h"
#include "tests/support/page_state.h"

namespace {

void CompareSplitting(std::string_view text) {
    StyleScanner scanner(text);
    std::vector<StyleDeclaration> scanned;
    for (StyleDeclaration one; scanner.Next(one);)
        if (one.text.find(':') != one.text.npos) scanned.push_back(one);
    // After a leading or doubled ";", the transcription takes the rest as one declaration of an unknown name.
    const auto plain = naive::Declarations(std::string(text));
    const bool hasRest = scanner.GetRest().find(':') != std::string_view::npos;
    Require(plain.size() == scanned.size() + (hasRest ? 1 : 0));
    for (std::size_t i = 0; i < scanned.size(); ++i)
        Require(scanned[i].name == plain[i].first && scanned[i].value == plain[i].second);
    if (hasRest) Require(FindProperty(plain.back().first) == nullptr);
}

void CompareStates(std::string_view text) {
    PageState fast(10.0, 20.0), plain(10.0, 20.0);
    ApplyStyleText(fast, text);
    StyleStep step{plain};
    for (const auto& [name, value] : naive::Declarations(std::string(text))) {
        const PropertyRow* row = FindProperty(name);
        if (row && row->apply) row->apply(step, value);
    }
    UpdateDrawStyle(plain, step.mentions);
    MultiplyOpacity(plain, step.strokeFactor, step.fillFactor);
    Require(fast.drawStyle == plain.drawStyle);
    Require(fast.strokeCurrentColour == plain.strokeCurrentColour);
    Require(fast.fillCurrentColour == plain.fillCurrentColour);
    Require(SameNumber(fast.pageWidth, plain.pageWidth));
}

void CompareDashes(std::string_view text) {
    PageState state(10.0, 10.0);
    ApplyDashArray(state, text);
    if (text.empty() || text == "none") {
        Require(state.stroke == ORVPrtStrokeAttributes());
        return;
    }
    const std::vector<float> expected = naive::Dashes(std::string(text));
    const std::vector<float>& actual = state.stroke.GetStrokeDashPattern();
    Require(SameNumbers({actual.begin(), actual.end()}, {expected.begin(), expected.end()}));
}

const FuzzTarget kTarget("styles", [](std::string_view text) {
    CompareSplitting(text);
    CompareStates(text);
    CompareDashes(text);
});

}  // namespace
