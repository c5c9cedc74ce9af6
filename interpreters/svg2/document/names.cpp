// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/document/names.h"

#include <array>
#include <cstddef>
#include <iterator>
#include <span>

namespace svg2 {
namespace {

// In the order of enum Tag.
constexpr std::string_view kTags[] = {"",
                                      "a",
                                      "circle",
                                      "clipPath",
                                      "defs",
                                      "desc",
                                      "ellipse",
                                      "feBlend",
                                      "feColorMatrix",
                                      "feComponentTransfer",
                                      "feComposite",
                                      "feConvolveMatrix",
                                      "feDiffuseLighting",
                                      "feDisplacementMap",
                                      "feDistantLight",
                                      "feDropShadow",
                                      "feFlood",
                                      "feFuncA",
                                      "feFuncB",
                                      "feFuncG",
                                      "feFuncR",
                                      "feGaussianBlur",
                                      "feImage",
                                      "feMerge",
                                      "feMergeNode",
                                      "feMorphology",
                                      "feOffset",
                                      "fePointLight",
                                      "feSpecularLighting",
                                      "feSpotLight",
                                      "feTile",
                                      "feTurbulence",
                                      "filter",
                                      "flowRoot",
                                      "foreignObject",
                                      "g",
                                      "image",
                                      "line",
                                      "linearGradient",
                                      "marker",
                                      "mask",
                                      "metadata",
                                      "path",
                                      "pattern",
                                      "polygon",
                                      "polyline",
                                      "radialGradient",
                                      "rect",
                                      "script",
                                      "stop",
                                      "style",
                                      "svg",
                                      "switch",
                                      "symbol",
                                      "text",
                                      "textPath",
                                      "title",
                                      "tref",
                                      "tspan",
                                      "use",
                                      "view",
                                      "page",
                                      "namedview"};
constexpr std::string_view kNames[] = {"clip-path",
                                       "clip-rule",
                                       "color",
                                       "color-interpolation",
                                       "color-interpolation-filters",
                                       "direction",
                                       "display",
                                       "dominant-baseline",
                                       "alignment-baseline",
                                       "baseline-shift",
                                       "fill",
                                       "fill-opacity",
                                       "fill-rule",
                                       "filter",
                                       "flood-color",
                                       "flood-opacity",
                                       "font-family",
                                       "font-size",
                                       "font-size-adjust",
                                       "font-stretch",
                                       "font-style",
                                       "font-variant",
                                       "font-weight",
                                       "glyph-orientation-horizontal",
                                       "glyph-orientation-vertical",
                                       "image-rendering",
                                       "kerning",
                                       "letter-spacing",
                                       "lighting-color",
                                       "marker-end",
                                       "marker-mid",
                                       "marker-start",
                                       "mask",
                                       "mask-type",
                                       "opacity",
                                       "overflow",
                                       "paint-order",
                                       "shape-rendering",
                                       "stop-color",
                                       "stop-opacity",
                                       "stroke",
                                       "stroke-dasharray",
                                       "stroke-dashoffset",
                                       "stroke-linecap",
                                       "stroke-linejoin",
                                       "stroke-miterlimit",
                                       "stroke-opacity",
                                       "stroke-width",
                                       "text-anchor",
                                       "text-decoration",
                                       "text-rendering",
                                       "transform-origin",
                                       "transform-box",
                                       "unicode-bidi",
                                       "vector-effect",
                                       "visibility",
                                       "white-space",
                                       "word-spacing",
                                       "writing-mode",
                                       "font",
                                       "x",
                                       "y",
                                       "cx",
                                       "cy",
                                       "r",
                                       "rx",
                                       "ry",
                                       "width",
                                       "height",
                                       "d",
                                       "transform",
                                       "mix-blend-mode",
                                       "isolation",
                                       "font-kerning",
                                       "font-variation-settings",
                                       "font-feature-settings",
                                       "marker",
                                       "all",
                                       "text-decoration-line",
                                       "text-decoration-color",
                                       "text-decoration-style",
                                       "text-decoration-thickness",
                                       "text-orientation",
                                       "text-transform",
                                       "font-variant-caps",
                                       "font-variant-ligatures",
                                       "font-variant-numeric",
                                       "font-variant-position",
                                       "font-variant-east-asian",
                                       "font-variant-alternates",
                                       "font-optical-sizing",
                                       "background-color",
                                       "inline-size",
                                       "shape-inside",
                                       "id",
                                       "class",
                                       "style",
                                       "href",
                                       "lang",
                                       "space",
                                       "type",
                                       "media",
                                       "points",
                                       "x1",
                                       "y1",
                                       "x2",
                                       "y2",
                                       "viewBox",
                                       "preserveAspectRatio",
                                       "pathLength",
                                       "dx",
                                       "dy",
                                       "rotate",
                                       "textLength",
                                       "lengthAdjust",
                                       "startOffset",
                                       "path",
                                       "side",
                                       "method",
                                       "spacing",
                                       "systemLanguage",
                                       "requiredExtensions",
                                       "requiredFeatures",
                                       "gradientUnits",
                                       "gradientTransform",
                                       "spreadMethod",
                                       "fx",
                                       "fy",
                                       "fr",
                                       "offset",
                                       "patternUnits",
                                       "patternContentUnits",
                                       "patternTransform",
                                       "clipPathUnits",
                                       "maskUnits",
                                       "maskContentUnits",
                                       "markerUnits",
                                       "markerWidth",
                                       "markerHeight",
                                       "orient",
                                       "refX",
                                       "refY",
                                       "primitiveUnits",
                                       "filterUnits",
                                       "result",
                                       "in",
                                       "in2",
                                       "mode",
                                       "values",
                                       "stdDeviation",
                                       "tableValues",
                                       "slope",
                                       "intercept",
                                       "amplitude",
                                       "exponent",
                                       "operator",
                                       "k1",
                                       "k2",
                                       "k3",
                                       "k4",
                                       "order",
                                       "kernelMatrix",
                                       "divisor",
                                       "bias",
                                       "targetX",
                                       "targetY",
                                       "edgeMode",
                                       "preserveAlpha",
                                       "surfaceScale",
                                       "diffuseConstant",
                                       "specularConstant",
                                       "specularExponent",
                                       "kernelUnitLength",
                                       "azimuth",
                                       "elevation",
                                       "z",
                                       "pointsAtX",
                                       "pointsAtY",
                                       "pointsAtZ",
                                       "limitingConeAngle",
                                       "scale",
                                       "xChannelSelector",
                                       "yChannelSelector",
                                       "radius",
                                       "baseFrequency",
                                       "numOctaves",
                                       "seed",
                                       "stitchTiles",
                                       "target",
                                       "groupmode",
                                       "label",
                                       "insensitive",
                                       "href"};
static_assert(std::size(kTags) == static_cast<std::size_t>(Tag::kNamedView) + 1);
static_assert(std::size(kNames) == static_cast<std::size_t>(Name::kCount));

/// Hash table from names to enumerators, built once; a look-up takes one or two probes.
template <std::size_t kSize>
class NameTable {
public:
    explicit NameTable(std::span<const std::string_view> names) : names_(names) {
        slots_.fill(kEmpty);
        for (std::size_t i = 0; i < names.size(); ++i) {
            std::size_t slot = SlotOf(names[i]);
            while (slots_[slot] != kEmpty) slot = (slot + 1) % kSize;
            slots_[slot] = static_cast<std::uint8_t>(i);
        }
    }

    std::optional<std::uint8_t> Find(std::string_view name) const {
        if (name.empty()) return std::nullopt;
        for (std::size_t slot = SlotOf(name); slots_[slot] != kEmpty; slot = (slot + 1) % kSize)
            if (names_[slots_[slot]] == name) return slots_[slot];
        return std::nullopt;
    }

private:
    static constexpr std::uint8_t kEmpty = 255;

    static std::size_t SlotOf(std::string_view name) {
        const auto at = [&](std::size_t i) { return static_cast<unsigned char>(name[i]); };
        if (name.empty()) return 0;
        const std::size_t mixed = at(0) * 7U + at(name.size() - 1) * 31U + at(name.size() / 2) * 131U;
        return (mixed + name.size() * 17U) % kSize;
    }

    std::span<const std::string_view> names_;
    std::array<std::uint8_t, kSize> slots_{};
};

}  // namespace

Tag FindTag(std::string_view localName) {
    static const NameTable<257> kTable{std::span(kTags).first(static_cast<std::size_t>(Tag::kPage))};
    const auto found = kTable.Find(localName);
    return found ? static_cast<Tag>(*found) : Tag::kUnknown;
}

std::optional<Name> FindName(std::string_view localName) {
    static const NameTable<1031> kTable{std::span(kNames).first(static_cast<std::size_t>(Name::kXlinkHref))};
    const auto found = kTable.Find(localName);
    if (!found) return std::nullopt;
    return static_cast<Name>(*found);
}

std::string_view TextOf(Tag tag) { return kTags[static_cast<std::size_t>(tag)]; }
std::string_view TextOf(Name name) { return kNames[static_cast<std::size_t>(name)]; }

}  // namespace svg2
