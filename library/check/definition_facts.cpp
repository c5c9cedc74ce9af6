// SPDX-License-Identifier: Apache-2.0
#include "library/check/definition_facts.h"

#include <algorithm>

#include "interpreters/svg/state/SvgDrawState.h"

namespace {

using Stroke = ORVPrtStrokeAttributes;
using Fill = ORVPrtFillAttributes;
using Text = ORVPrtTextAttributes;

// The properties for which a reference provides different values, as SaidOf bits.
class Differences {
public:
    Differences(const DrawnSets& own, const SvgDrawState& by) {
        if (own.strokes) {
            Add(own.stroke, by.stroke, SaidOf::kStroke, &Stroke::GetStrokeColourIndex);
            Add(own.stroke, by.stroke, SaidOf::kStrokeOpacity, &Stroke::GetStrokeColourTransparency);
            Add(own.stroke, by.stroke, SaidOf::kDashes, &Stroke::GetStrokeType);
            Add(own.stroke, by.stroke, SaidOf::kStrokeWidth, &Stroke::GetStrokeWidth);
            Add(own.stroke, by.stroke, SaidOf::kLineCap, &Stroke::GetStrokeCap);
            Add(own.stroke, by.stroke, SaidOf::kLineJoin, &Stroke::GetStrokeJoin);
        }
        if (own.fills) {
            Add(own.fill, by.fill, SaidOf::kFill, &Fill::GetFillColourIndex);
            Add(own.fill, by.fill, SaidOf::kFill, &Fill::GetFillStyle);
            Add(own.fill, by.fill, SaidOf::kFillOpacity, &Fill::GetFillColourTransparency);
            Add(own.fill, by.fill, SaidOf::kFillRule, &Fill::GetFillRule);
        }
        if (own.isText) {
            Add(own.text, by.text, SaidOf::kFontFamily, &Text::GetFont);
            Add(own.text, by.text, SaidOf::kFontSize, &Text::GetHeight);
            Add(own.text, by.text, SaidOf::kFontWeight, &Text::GetWeight);
            Add(own.text, by.text, SaidOf::kTextAnchor, &Text::GetAnchor);
            Add(own.text, by.text, SaidOf::kLetterSpacing, &Text::GetExtraSpacing);
            Add(own.text, by.text, SaidOf::kWritingMode, &Text::GetWritingMode);
        }
    }

    std::uint32_t Get() const { return bits_; }

private:
    template <class Attributes, class Getter>
    void Add(const Attributes& own, const Attributes& by, SaidOf property, Getter getter) {
        if ((own.*getter)() != (by.*getter)()) bits_ |= static_cast<std::uint32_t>(property);
    }

    std::uint32_t bits_ = 0;
};

bool Says(const DrawnSets& sets, SaidOf property) {
    return (sets.said & static_cast<std::uint32_t>(property)) != 0;
}

bool MissesPaint(const DrawnSets& own, const SvgDrawState& by) {
    if (own.isLine) return false;  // never filled, and always stroked
    return (!Says(own, SaidOf::kFill) && own.fills != ORVFills(by.drawStyle)) ||
           (!Says(own, SaidOf::kStroke) && own.strokes != ORVStrokes(by.drawStyle));
}

}  // namespace

void DefinitionFacts::Add(DrawnSets one) {
    ++leaves;
    if (isManifold || std::find(sets.begin(), sets.end(), one) != sets.end()) return;
    if (sets.size() < kMostSets)
        sets.push_back(std::move(one));
    else
        isManifold = true;
}

bool DefinitionFacts::IsReplacedBy(const SvgDrawState& state) const {
    return isManifold || std::any_of(sets.begin(), sets.end(), [&](const DrawnSets& one) {
               // The definition would have been painted in the current colour at the reference.
               const bool isOtherColour =
                   one.isCurrent && (one.fill.GetFillColourIndex() != state.fillCurrentColour ||
                                     state.fill.GetFillColourIndex() != state.fillCurrentColour);
               return isOtherColour || (Differences(one, state).Get() & one.said) != 0;
           });
}

bool DefinitionFacts::IsChangedBy(const SvgDrawState& state) const {
    return isManifold || std::any_of(sets.begin(), sets.end(), [&](const DrawnSets& one) {
               return Differences(one, state).Get() != 0;
           });
}

bool DefinitionFacts::HasOverlaps() const {
    return leaves != 1 || std::any_of(sets.begin(), sets.end(),
                                      [](const DrawnSets& one) { return one.fills && one.strokes; });
}

bool DefinitionFacts::MissesPaintOf(const SvgDrawState& state) const {
    return std::any_of(sets.begin(), sets.end(),
                       [&](const DrawnSets& one) { return MissesPaint(one, state); });
}

const DefinitionFacts* MetDefinitions::Find(const SvgDefinitions::Definition& definition) const {
    const auto found = byStandIn_.find(definition.primitive);
    return found == byStandIn_.end() ? nullptr : &found->second;
}
