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

/// What an inside or an outline is painted with, as the style says it.
struct Paint {
    enum class Kind : std::uint8_t {
        kNone,
        kColour,
        kCurrentColour,  ///< the colour of the element that paints
        kReference,      ///< a gradient or pattern
        kContextFill,
        kContextStroke,
    };
    Kind kind = Kind::kNone;
    Kind fallback = Kind::kNone;  ///< of a reference that leads to nothing: none, a colour, the current one
    Colour colour;                ///< or that of the fallback
    std::string_view reference;   ///< identifier
    friend bool operator==(const Paint&, const Paint&) = default;
};

/// A colour that may be the current one.
struct ColourValue {
    Colour colour;
    bool isCurrent = false;
};

enum class Visibility : std::uint8_t { kVisible, kHidden };
enum class TextAnchor : std::uint8_t { kStart, kMiddle, kEnd };
enum class WritingMode : std::uint8_t { kHorizontal, kVerticalRightToLeft, kVerticalLeftToRight };
/// What is done with white space in text.
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
/// How characters that do not belong in vertical lines stand there.
enum class TextOrientation : std::uint8_t {
    kMixed,  ///< those that belong there upright, others on their side
    kUpright,
    kSideways,
};
/// Forms of letters that fonts may have, as flags.
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
/// Which measure of a font, in em, its size is to be adjusted by, and to what.
struct FontSizeAdjustment {
    enum class Measure : std::uint8_t { kExHeight, kCapHeight, kZeroWidth, kIdeographWidth };
    Measure measure = Measure::kExHeight;
    double value = kNone;  ///< of the size that is stated
    static constexpr double kNone = -1.0;
    friend bool operator==(const FontSizeAdjustment&, const FontSizeAdjustment&) = default;
};
/// Lines that decorate text, as flags.
enum DecorationLine : std::uint8_t { kUnderline = 1, kOverline = 2, kLineThrough = 4 };

enum class DecorationStyle : std::uint8_t { kSolid, kDouble, kDotted, kDashed, kWavy };

/// Lines that decorate text, and the paints of the element that asks for them.
struct Decoration {
    std::uint8_t lines = 0;  ///< DecorationLine
    DecorationStyle style = DecorationStyle::kSolid;
    std::optional<double> thickness;  ///< in px; nothing for that of the font
    Paint fill, stroke;
    double fillOpacity = 1.0, strokeOpacity = 1.0;
    Length strokeWidth{1.0, 0.0};
    Colour colour;  ///< what the current colour is
    double fontSize = 12.0;
    std::string_view fontFamily;
    int fontWeight = 400;
    bool isItalic = false;
};

/// Variables that an element states, before those of the elements around it.
struct VariableScope {
    std::shared_ptr<const VariableScope> outer;  ///< null for none
    std::unordered_map<std::string_view, std::string_view> own;
};

/// Values of the properties that elements inherit. Lengths are in px.
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
    std::shared_ptr<const std::vector<Length>> dashes;  ///< null for a solid line
    Length dashOffset;
    Visibility visibility = Visibility::kVisible;
    std::string_view markerStart, markerMid, markerEnd;  ///< identifiers, empty for none
    std::array<PaintPart, 3> paintOrder{PaintPart::kFill, PaintPart::kStroke, PaintPart::kMarkers};
    bool hasCrispEdges = false;
    ImageRendering imageRendering = ImageRendering::kSmooth;
    bool interpolatesLinear = false;       ///< color-interpolation
    bool filtersInterpolateLinear = true;  ///< color-interpolation-filters

    std::string_view fontFamily;  ///< list as written, empty for the default
    double fontSize = 12.0;
    int fontWeight = 400;
    bool isItalic = false;
    double fontStretch = 100.0;  ///< percent
    FontSizeAdjustment fontSizeAdjustment;
    std::uint32_t fontVariants = 0;          ///< FontVariant
    std::string_view fontFeatureSettings;    ///< as written, empty for none
    std::string_view fontVariationSettings;  ///< likewise
    bool hasOpticalSizes = true;
    bool hasKerning = true;
    TextOrientation textOrientation = TextOrientation::kMixed;
    Length letterSpacing, wordSpacing;
    TextAnchor textAnchor = TextAnchor::kStart;
    bool isRightToLeft = false;
    WritingMode writingMode = WritingMode::kHorizontal;
    Baseline dominantBaseline = Baseline::kAuto;
    WhiteSpace whiteSpace = WhiteSpace::kCollapse;
    std::shared_ptr<const std::vector<Decoration>> decorations;  ///< null for none
    std::shared_ptr<const VariableScope> variables;              ///< null for none
};

/// Properties of shape and place that style sheets state, each once: name and text. They win over the
/// attributes.
using GeometryRules = std::vector<std::pair<Name, std::string_view>>;

/// Values of the properties that each element has for itself.
struct OwnStyle {
    bool isDisplayed = true;
    double opacity = 1.0;
    std::string_view clipPath, mask, filter;  ///< as written, empty for none
    ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal;
    bool isIsolated = false;
    bool hidesOverflow = true;  ///< of elements that make a viewport
    bool overflowIsStated = false;
    std::string_view transformOrigin, transformBox;
    ColourValue stopColour, floodColour, lightingColour{{255, 255, 255, 1.0F}, false};
    ColourValue backgroundColour{{0, 0, 0, 0.0F}, false};
    double stopOpacity = 1.0, floodOpacity = 1.0;
    std::uint8_t decorationLines = 0;
    DecorationStyle decorationStyle = DecorationStyle::kSolid;
    std::optional<Length> decorationThickness;  ///< percentages are of the size of the font
    std::string_view baselineShift;
    Baseline alignmentBaseline = Baseline::kAuto;
    std::string_view unicodeBidi;
    bool hasNonScalingStroke = false;
    bool isOpacityMask = false;               ///< mask-type
    std::shared_ptr<GeometryRules> geometry;  ///< null for none; of this element alone
};

/// What an element looks like.
struct Style : InheritedStyle, OwnStyle {
    const InheritedStyle& GetInherited() const { return *this; }
    const OwnStyle& GetOwn() const { return *this; }
};

/// The colour that a value stands for on an element.
inline Colour Resolve(const ColourValue& value, const Style& style) {
    return value.isCurrent ? style.colour : value.colour;
}

}  // namespace svg2
