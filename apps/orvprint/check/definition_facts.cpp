#include "apps/orvprint/check/definition_facts.h"

#include <algorithm>

#include "plugin/structure/SvgDrawState.h"

namespace {

// Whether something was said of a property, and a reference replaces it by something else.
template <class Attributes, class... Getters>
bool AnyReplaced(const Attributes& own, const Attributes& by, Getters... getters) {
    const Attributes unset;
    return ((((own.*getters)() != (unset.*getters)()) && ((own.*getters)() != (by.*getters)())) || ...);
}

bool IsReplaced(const DrawnSets& own, const SvgDrawState& by) {
    using Stroke = ORVPrtStrokeAttributes;
    using Fill = ORVPrtFillAttributes;
    using Text = ORVPrtTextAttributes;
    return AnyReplaced(own.stroke, by.stroke, &Stroke::GetStrokeColourIndex,
                       &Stroke::GetStrokeColourTransparency, &Stroke::GetStrokeType, &Stroke::GetStrokeWidth,
                       &Stroke::GetStrokeCap, &Stroke::GetStrokeJoin) ||
           AnyReplaced(own.fill, by.fill, &Fill::GetFillColourIndex, &Fill::GetFillColourTransparency,
                       &Fill::GetFillRule, &Fill::GetFillStyle) ||
           AnyReplaced(own.text, by.text, &Text::GetFont, &Text::GetWeight, &Text::GetHeight,
                       &Text::GetAnchor, &Text::GetExtraSpacing, &Text::GetWritingMode);
}

}  // namespace

void DefinitionFacts::Add(DrawnSets one) {
    if (isManifold || std::find(sets.begin(), sets.end(), one) != sets.end()) return;
    if (sets.size() < kMostSets)
        sets.push_back(std::move(one));
    else
        isManifold = true;
}

bool DefinitionFacts::IsReplacedBy(const SvgDrawState& state) const {
    return isManifold || std::any_of(sets.begin(), sets.end(),
                                     [&](const DrawnSets& one) { return IsReplaced(one, state); });
}

const DefinitionFacts* MetDefinitions::Find(const SvgDefinitions::Definition& definition) const {
    const auto found = byStandIn_.find(definition.primitive);
    return found == byStandIn_.end() ? nullptr : &found->second;
}
