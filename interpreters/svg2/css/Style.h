// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interpreters/svg2/document/names.h"
#include "interpreters/svg2/values/colour.h"
#include "interpreters/svg2/values/length.h"
#include "platform/print/ORVPrintGenerator.h"

namespace svg2 {

/// The paint of a fill or stroke, as specified.
struct Paint {
    enum class Kind : std::uint8_t {
        kNone,
        kColour,
        kCurrentColour,  ///< the property `color` of the element
        kReference,      ///< a gradient or pattern
        kContextFill,
        kContextStroke,
    };
    Kind kind = Kind::kNone;
    /// the fallback of an unresolved reference: none, a colour, or currentColor
    Kind fallback = Kind::kNone;
    Colour colour;               ///< the colour, or that of the fallback
    std::string_view reference;  ///< identifier of the reference
    friend bool operator==(const Paint&, const Paint&) = default;
};

/// A colour or currentColor.
struct ColourValue {
    Colour colour;
    bool isCurrent = false;
};

enum class Visibility : std::uint8_t { kVisible, kHidden };
enum class TextAnchor : std::uint8_t { kStart, kMiddle, kEnd };
enum class WritingMode : std::uint8_t { kHorizontal, kVerticalRightToLeft, kVerticalLeftToRight };
/// How white space in text is collapsed.
enum class WhiteSpace : std::uint8_t {
    kCollapse,  ///< runs become one space
    kPreserve,  ///< each character becomes a space
};
enum class Baseline : std::uint8_t {
    kAuto,
    kAlphabetic,
    kHanging,
    kMathematical,
    kMiddle,
    kCentral,
    kTextBeforeEdge,
    kTextAfterEdge,
    kIdeographic,
    kNoChange,
};
enum class ImageRendering : std::uint8_t { kSmooth, kNearest };
enum class PaintPart : std::uint8_t { kFill, kStroke, kMarkers };
/// Orientation of horizontal scripts in vertical text.
enum class TextOrientation : std::uint8_t {
    kMixed,  ///< characters of vertical scripts upright, others sideways
    kUpright,
    kSideways,
};
enum class TextTransform : std::uint8_t { kNone, kUppercase, kLowercase, kCapitalize };
/// Optional glyph forms of fonts, as flags.
enum FontVariant : std::uint32_t {
    kNoCommonLigatures = 1U << 0U,
    kDiscretionaryLigatures = 1U << 1U,
    kHistoricalLigatures = 1U << 2U,
    kNoContextual = 1U << 3U,
    kSmallCaps = 1U << 4U,
    kAllSmallCaps = 1U << 5U,
    kPetiteCaps = 1U << 6U,
    kAllPetiteCaps = 1U << 7U,
    kUnicase = 1U << 8U,
    kTitlingCaps = 1U << 9U,
    kLiningNumbers = 1U << 10U,
    kOldstyleNumbers = 1U << 11U,
    kProportionalNumbers = 1U << 12U,
    kTabularNumbers = 1U << 13U,
    kDiagonalFractions = 1U << 14U,
    kStackedFractions = 1U << 15U,
    kOrdinals = 1U << 16U,
    kSlashedZero = 1U << 17U,
    kSubscript = 1U << 18U,
    kSuperscript = 1U << 19U,
    kJis78 = 1U << 20U,
    kJis83 = 1U << 21U,
    kJis90 = 1U << 22U,
    kJis04 = 1U << 23U,
    kSimplified = 1U << 24U,
    kTraditional = 1U << 25U,
    kFullWidth = 1U << 26U,
    kProportionalWidth = 1U << 27U,
    kRuby = 1U << 28U,
    kHistoricalForms = 1U << 29U,
};
/// What the font of an element is chosen by.
struct FontKey {
    std::string_view family;
    int weight = 400;
    bool isItalic = false;
    double stretch = 100.0, size = 12.0;
    std::string_view variations;
};
/// The font metric, in em, that font-size-adjust refers to, and its target value.
struct FontSizeAdjustment {
    enum class Measure : std::uint8_t { kExHeight, kCapHeight, kZeroWidth, kIdeographWidth };
    Measure measure = Measure::kExHeight;
    double value = kNone;  ///< of the specified size
    static constexpr double kNone = -1.0;
    bool isFromFont = false;              ///< the target is the metric of `font`
    std::shared_ptr<const FontKey> font;  ///< of the element that declares it, from which it is inherited
};
/// Decoration lines, as flags.
enum DecorationLine : std::uint8_t { kUnderline = 1, kOverline = 2, kLineThrough = 4 };

enum class DecorationStyle : std::uint8_t { kSolid, kDouble, kDotted, kDashed, kWavy };

/// Decoration lines and the paints of the element that declares them.
struct Decoration {
    std::uint8_t lines = 0;  ///< flags of DecorationLine
    DecorationStyle style = DecorationStyle::kSolid;
    std::optional<double> thickness;  ///< in px; empty: the font's own
    Paint fill, stroke;
    double fillOpacity = 1.0, strokeOpacity = 1.0;
    Length strokeWidth{1.0, 0.0};
    Colour colour;  ///< the value of currentColor
    double fontSize = 12.0;
    std::string_view fontFamily;
    int fontWeight = 400;
    bool isItalic = false;
};

/// Variables declared by an element, which shadow those of its ancestors.
struct VariableScope {
    std::shared_ptr<const VariableScope> outer;  ///< null at the root
    std::unordered_map<std::string_view, std::string_view> own;
};

/// Computed values of inherited properties. Lengths are in px.
struct InheritedStyle {
    Colour colour;
    Paint fill{Paint::Kind::kColour, Paint::Kind::kNone, {}, {}};
    Paint stroke;
    double fillOpacity = 1.0, strokeOpacity = 1.0;
    bool fillIsEvenOdd = false, clipIsEvenOdd = false;
    Length strokeWidth{1.0, 0.0};
    ORVPrintStroke::Cap cap = ORVPrintStroke::Cap::kButt;
    ORVPrintStroke::Join join = ORVPrintStroke::Join::kMiter;
    double miterLimit = 4.0;
    std::shared_ptr<const std::vector<Length>> dashes;  ///< null: a solid line
    Length dashOffset;
    Visibility visibility = Visibility::kVisible;
    std::string_view markerStart, markerMid, markerEnd;  ///< identifiers; empty: none
    std::array<PaintPart, 3> paintOrder{PaintPart::kFill, PaintPart::kStroke, PaintPart::kMarkers};
    bool hasCrispEdges = false;
    ImageRendering imageRendering = ImageRendering::kSmooth;
    bool interpolatesLinear = false;       ///< color-interpolation
    bool filtersInterpolateLinear = true;  ///< color-interpolation-filters

    std::string_view fontFamily;  ///< as written; empty: the default
    double fontSize = 12.0;
    int fontWeight = 400;
    bool isItalic = false;
    double fontStretch = 100.0;  ///< in percent
    FontSizeAdjustment fontSizeAdjustment;
    std::uint32_t fontVariants = 0;          ///< flags of FontVariant
    std::string_view fontFeatureSettings;    ///< as written; empty: none
    std::string_view fontVariationSettings;  ///< as written; empty: none
    bool hasOpticalSizes = true;
    bool hasKerning = true;
    TextOrientation textOrientation = TextOrientation::kMixed;
    TextTransform textTransform = TextTransform::kNone;
    Length letterSpacing, wordSpacing;
    TextAnchor textAnchor = TextAnchor::kStart;
    bool isRightToLeft = false;
    WritingMode writingMode = WritingMode::kHorizontal;
    Baseline dominantBaseline = Baseline::kAuto;
    WhiteSpace whiteSpace = WhiteSpace::kCollapse;
    std::shared_ptr<const std::vector<Decoration>> decorations;  ///< null: none
    std::shared_ptr<const VariableScope> variables;              ///< null: none
};

/// Geometry properties from style sheets: name and text, each name once. They override the attributes.
using GeometryRules = std::vector<std::pair<Name, std::string_view>>;

/// Computed values of properties that are not inherited.
struct OwnStyle {
    bool isDisplayed = true;
    double opacity = 1.0;
    std::string_view clipPath, mask, filter;  ///< as written; empty: none
    ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal;
    bool isIsolated = false;
    bool hidesOverflow = true;  ///< for elements that establish a viewport
    bool overflowIsStated = false;
    std::string_view transformOrigin, transformBox;
    ColourValue stopColour, floodColour, lightingColour{{255, 255, 255, 1.0F}, false};
    ColourValue backgroundColour{{0, 0, 0, 0.0F}, false};
    double stopOpacity = 1.0, floodOpacity = 1.0;
    std::uint8_t decorationLines = 0;
    DecorationStyle decorationStyle = DecorationStyle::kSolid;
    std::optional<Length> decorationThickness;  ///< percentages refer to the font size
    std::string_view baselineShift;
    Baseline alignmentBaseline = Baseline::kAuto;
    std::string_view unicodeBidi;
    bool hasNonScalingStroke = false;
    bool isOpacityMask = false;               ///< mask-type
    std::shared_ptr<GeometryRules> geometry;  ///< null: none; not inherited
};

/// The computed style of an element.
struct Style : InheritedStyle, OwnStyle {
    const InheritedStyle& GetInherited() const { return *this; }
    const OwnStyle& GetOwn() const { return *this; }
};

/// Resolves currentColor for an element.
inline Colour Resolve(const ColourValue& value, const Style& style) {
    return value.isCurrent ? style.colour : value.colour;
}

}  // namespace svg2
