// SPDX-License-Identifier: Apache-2.0
#include "library/check/svg_names.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "interpreters/svg/values/text_scan.h"

namespace {

using enum FindingCode;

template <class Row, std::size_t N>
const Row* FindRow(const Row (&rows)[N], std::string_view name) {
    const auto* found =
        std::find_if(std::begin(rows), std::end(rows), [name](const Row& row) { return row.name == name; });
    return found == std::end(rows) ? nullptr : found;
}

template <std::size_t N>
bool Contains(const std::string_view (&names)[N], std::string_view name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

constexpr UnprintedElement kElements[] = {
    {"altGlyph", kTextSpan},
    {"altGlyphDef", std::nullopt},
    {"animate", kAnimation},
    {"animateColor", kAnimation},
    {"animateMotion", kAnimation},
    {"animateTransform", kAnimation},
    {"clipPath", std::nullopt},
    {"color-profile", kUnprintedElement},
    {"cursor", std::nullopt},
    {"discard", kAnimation},
    {"filter", std::nullopt},
    {"flowRoot", kTextSpan},
    {"font", kSvgFont},
    {"font-face", kSvgFont},
    {"foreignObject", kForeignObject},
    {"hatch", std::nullopt},
    {"linearGradient", std::nullopt},
    {"mask", std::nullopt},
    {"mesh", kUnprintedElement},
    {"meshgradient", std::nullopt},
    {"metadata", std::nullopt},
    {"mpath", kAnimation},
    {"radialGradient", std::nullopt},
    {"script", kScript},
    {"set", kAnimation},
    {"solidcolor", std::nullopt},
    {"style", kStyleSheet},
    {"switch", kSwitch},
    {"textPath", kTextSpan},
    {"tref", kTextSpan},
    {"tspan", kTextSpan},
    {"view", std::nullopt},
};

constexpr std::string_view kSilentAttributes[] = {
    "baseProfile",
    "class",
    "contentScriptType",
    "contentStyleType",
    "externalResourcesRequired",
    "focusable",
    "lang",
    "role",
    "requiredFeatures",
    "tabindex",
    "target",
    "version",
    "xlink:actuate",
    "xlink:arcrole",
    "xlink:role",
    "xlink:title",
    "xlink:type",
    "xmlns",
    "zoomAndPan",
};

constexpr std::string_view kSvgAttributes[] = {
    "accent-height",
    "attributeName",
    "clipPathUnits",
    "crossorigin",
    "download",
    "filterRes",
    "filterUnits",
    "fr",
    "fx",
    "fy",
    "gradientTransform",
    "gradientUnits",
    "hreflang",
    "markerUnits",
    "maskUnits",
    "media",
    "method",
    "offset",
    "orient",
    "paint-order",
    "patternContentUnits",
    "patternUnits",
    "preserveAspectRatio",
    "requiredExtensions",
    "side",
    "spacing",
    "spreadMethod",
    "startOffset",
    "systemLanguage",
    "title",
    "transform-origin",
    "type",
    "vector-effect",
};

// Values that a property without effect has by default, or that make no difference here.
struct InitialValues {
    std::string_view name, values;  // the values, separated by blanks
};
constexpr InitialValues kInitialValues[] = {
    {"alignment-baseline", " auto baseline "},
    {"baseline-shift", " baseline 0 0px "},
    {"clip", " auto "},
    {"clip-path", " none "},
    {"clip-rule", " nonzero evenodd "},
    {"color-interpolation", " sRGB auto "},
    {"color-interpolation-filters", " auto linearRGB sRGB "},
    {"color-profile", " auto "},
    {"color-rendering", " auto optimizeSpeed optimizeQuality "},
    {"direction", " ltr "},
    {"display", " inline block "},
    {"dominant-baseline", " auto alphabetic "},
    {"filter", " none "},
    {"font-size-adjust", " none "},
    {"font-stretch", " normal "},
    {"font-style", " normal "},
    {"font-variant", " normal "},
    {"glyph-orientation-horizontal", " 0 0deg "},
    {"glyph-orientation-vertical", " auto "},
    {"image-rendering", " auto optimizeQuality "},
    {"kerning", " auto "},
    {"marker", " none "},
    {"marker-end", " none "},
    {"marker-mid", " none "},
    {"marker-start", " none "},
    {"mask", " none "},
    {"overflow", " visible auto "},
    {"shape-rendering", " auto geometricPrecision crispEdges optimizeSpeed "},
    {"stroke-dashoffset", " 0 0px 0pt 0.0 "},
    {"stroke-miterlimit", " 4 4.0 10 "},
    {"text-decoration", " none "},
    {"text-rendering", " auto optimizeLegibility optimizeSpeed geometricPrecision "},
    {"unicode-bidi", " normal "},
    {"visibility", " visible inherit "},
    {"word-spacing", " normal 0 0px "},
    {"preserveAspectRatio", " none "},
    {"markerUnits", " userSpaceOnUse "},
    {"orient", " 0 "},
    {"patternUnits", " userSpaceOnUse "},
    {"patternContentUnits", " userSpaceOnUse "},
    {"paint-order", " normal "},
    {"vector-effect", " none "},
    {"font-feature-settings", " normal "},
    {"font-kerning", " auto "},
    {"font-optical-sizing", " auto "},
    {"font-variation-settings", " normal "},
    {"isolation", " auto "},
    {"mix-blend-mode", " normal "},
    {"text-orientation", " mixed "},
    {"block-progression", " tb "},
    {"text-overflow", " clip "},
    {"text-transform", " none "},
};

// Properties without effect on paper or on single lines of text, or relevant only to filters and gradients,
// which are reported separately.
constexpr std::string_view kSilentProperties[] = {
    "cursor",
    "enable-background",
    "flood-color",
    "inline-size",
    "lighting-color",
    "line-height",
    "overflow",
    "pointer-events",
    "shape-padding",
    "stroke-miterlimit",
    "solid-color",
    "solid-opacity",
    "stop-color",
    "stop-opacity",
    "text-align",
    "text-decoration-color",
    "text-decoration-line",
    "text-indent",
    "user-select",
    "text-decoration-style",
    "white-space",
    "will-change",
};

}  // namespace

const UnprintedElement* FindUnprintedElement(std::string_view name) { return FindRow(kElements, name); }

AttributeRole FindAttributeRole(std::string_view name) {
    if (name.starts_with("xmlns:") || name.starts_with("xml:") || name.starts_with("data-") ||
        name.starts_with("aria-") || Contains(kSilentAttributes, name))
        return AttributeRole::kSilent;
    if (name.starts_with("on") && name.find(':') == name.npos) return AttributeRole::kScript;
    return Contains(kSvgAttributes, name) ? AttributeRole::kSvg : AttributeRole::kUnknown;
}

bool IsInitialValue(std::string_view property, std::string_view value) {
    value = TrimBlanks(value);
    if (value.empty() || value == "inherit") return true;
    if (property.starts_with("font-variant-")) return value == "normal";
    const InitialValues* row = FindRow(kInitialValues, property);
    if (!row || value.find(' ') != value.npos) return false;
    const std::size_t found = row->values.find(value);
    return found != row->values.npos && row->values[found - 1] == ' ' &&
           row->values[found + value.size()] == ' ';
}

bool IsSilentProperty(std::string_view property) {
    return property.starts_with('-') || Contains(kSilentProperties, property);
}

FindingCode GetIgnoredPropertyCode(std::string_view property) {
    if (property == "clip-path" || property == "clip") return kClipPath;
    if (property == "mask") return kMask;
    if (property == "filter") return kFilter;
    return kIgnoredProperty;
}
