// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/property_table.h"

#include <algorithm>
#include <iterator>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/text_properties.h"
#include "interpreters/svg/values/colour.h"
#include "interpreters/svg/values/length.h"

namespace {

template <void (*kApply)(SvgDrawState&, std::string_view)>
void OnState(StyleStep& step, std::string_view value) {
    kApply(step.state, value);
}

void ApplyColor(StyleStep& step, std::string_view value) {
    unsigned int index = 0;
    if (ParseColour(step.state, value, index) != kRead) return;
    step.state.strokeCurrentColour = step.state.fillCurrentColour = index;
}

void ApplyFamily(StyleStep& step, std::string_view value) {
    ApplyFontFamily(step.state, value, PropertySource::kStyle);
}

void ApplyFill(StyleStep& step, std::string_view value) {
    const PaintMention mention = ApplyFillPaint(step.state, value);
    if (mention != PaintMention::kNone) step.mentions.fill = mention;
}

void ApplyStroke(StyleStep& step, std::string_view value) {
    const PaintMention mention = ApplyStrokePaint(step.state, value);
    if (mention != PaintMention::kNone) step.mentions.stroke = mention;
}

// In a style, the spacing always becomes 0, and a length replaces the page width that percentages of this
// element and its descendants refer to. Kept on purpose.
void ApplyLetterSpacing(StyleStep& step, std::string_view value) {
    if (IsLetterSpacingKeyword(value)) return;
    ParseLength(step.state, value, step.state.pageWidth);
    step.state.text.SetExtraSpacing(0.0);
}

// The factors are not multiplied: the last property wins.
void ApplyBothOpacities(StyleStep& step, std::string_view value) {
    if (ReadOpacityFactor(value, step.strokeFactor)) step.fillFactor = step.strokeFactor;
}

void ApplyStrokeOpacity(StyleStep& step, std::string_view value) {
    ReadOpacityFactor(value, step.strokeFactor);
}

void ApplyFillOpacity(StyleStep& step, std::string_view value) { ReadOpacityFactor(value, step.fillFactor); }

// Sorted by name for binary search.
constexpr PropertyRow kProperties[] = {
    {"alignment-baseline", nullptr},
    {"baseline-shift", nullptr},
    {"clip", nullptr},
    {"clip-path", nullptr},
    {"clip-rule", nullptr},
    {"color", ApplyColor},
    {"color-interpolation", nullptr},
    {"color-interpolation-filters", nullptr},
    {"color-profile", nullptr},
    {"color-rendering", nullptr},
    {"cursor", nullptr},
    {"direction", nullptr},
    {"display", nullptr},  // only the presentation attribute has an effect
    {"dominant-baseline", nullptr},
    {"enable-background", nullptr},
    {"fill", ApplyFill},
    {"fill-opacity", ApplyFillOpacity},
    {"fill-rule", OnState<ApplyFillRule>},
    {"filter", nullptr},
    {"flood-color", nullptr},
    {"font", nullptr},  // the shorthand is not supported
    {"font-family", ApplyFamily},
    {"font-size", OnState<ApplyFontSize>},
    {"font-size-adjust", nullptr},
    {"font-stretch", nullptr},
    {"font-style", nullptr},  // the slant is never set
    {"font-variant", nullptr},
    {"font-weight", OnState<ApplyFontWeight>},
    {"glyph-orientation-horizontal", nullptr},
    {"glyph-orientation-vertical", nullptr},
    {"image-rendering", nullptr},
    {"kerning", nullptr},
    {"letter-spacing", ApplyLetterSpacing},
    {"lighting-color", nullptr},
    {"marker", nullptr},  // markers come only from attributes
    {"marker-end", nullptr},
    {"marker-mid", nullptr},
    {"marker-start", nullptr},
    {"mask", nullptr},
    {"opacity", ApplyBothOpacities},
    {"overflow", nullptr},
    {"pointer-events", nullptr},
    {"shape-rendering", nullptr},
    {"stop-color", nullptr},
    {"stop-opacity", nullptr},
    {"stroke", ApplyStroke},
    {"stroke-dasharray", OnState<ApplyDashArray>},
    {"stroke-dashoffset", nullptr},
    {"stroke-linecap", OnState<ApplyLineCap>},
    {"stroke-linejoin", OnState<ApplyLineJoin>},
    {"stroke-miterlimit", nullptr},
    {"stroke-opacity", ApplyStrokeOpacity},
    {"stroke-width", OnState<ApplyStrokeWidth>},
    {"text-anchor", OnState<ApplyTextAnchor>},
    {"text-decoration", nullptr},
    {"text-rendering", nullptr},
    {"unicode-bidi", nullptr},
    {"visibility", nullptr},  // only the presentation attribute has an effect
    {"word-spacing", nullptr},
    {"writing-mode", OnState<ApplyWritingModeValue>},
};
static_assert(std::is_sorted(std::begin(kProperties), std::end(kProperties),
                             [](const PropertyRow& a, const PropertyRow& b) { return a.name < b.name; }));

}  // namespace

std::span<const PropertyRow> GetProperties() { return kProperties; }

const PropertyRow* FindProperty(std::string_view name) {
    const auto* found =
        std::lower_bound(std::begin(kProperties), std::end(kProperties), name,
                         [](const PropertyRow& row, std::string_view text) { return row.name < text; });
    return found != std::end(kProperties) && found->name == name ? found : nullptr;
}
