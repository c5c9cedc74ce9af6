// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/system/ORVBaseObject.h"

class ORVFontFace;

/// A colour of a painted glyph.
struct ORVGlyphPaintColour {
    bool isTextColour = true;  ///< that of the text
    std::uint8_t red = 0, green = 0, blue = 0;
    double opacity = 1.0;  ///< times that of the text
};

/// How an area of a painted glyph is filled: with one colour, or with colours that run into each other.
/// Places are in em of the glyph, y up, before `toGlyph`.
struct ORVGlyphPaint {
    enum class Kind : std::uint8_t { kColour, kLinear, kRadial, kSweep };
    enum class Spread : std::uint8_t { kPad, kReflect, kRepeat };
    struct Stop {
        double offset = 0.0;
        ORVGlyphPaintColour colour;
    };

    Kind kind = Kind::kColour;
    Spread spread = Spread::kPad;
    ORVGlyphPaintColour colour;  ///< of kColour
    std::vector<Stop> stops;     ///< of the others; one at least, in ascending order
    ORVMathPoint2D start, end;   ///< of the line, or centres; the first for a sweep
    double startRadius = 0.0;    ///< of kRadial
    double endRadius = 0.0;      ///< likewise
    double startAngle = 0.0;     ///< of kSweep: degrees against the clock from the x axis
    double endAngle = 0.0;       ///< likewise
    ORVMathAffine2D toGlyph;
};

/// How a layer of a painted glyph meets what lies below it.
enum class ORVGlyphBlend : std::uint8_t {
    kNormal,
    kScreen,
    kOverlay,
    kDarken,
    kLighten,
    kColourDodge,
    kColourBurn,
    kHardLight,
    kSoftLight,
    kDifference,
    kExclusion,
    kMultiply,
    kHue,
    kSaturation,
    kColour,
    kLuminosity,
};

/// Takes a glyph that is painted (COLR version 1), part by part. All but Fill pair and nest.
class ORV_PLATFORM_EXPORT ORVGlyphPaintSink {
public:
    virtual ~ORVGlyphPaintSink() = default;
    /// Until EndOutline, nothing shows outside of the outline of another glyph.
    virtual void BeginOutline(std::uint32_t glyph, const ORVMathAffine2D& toGlyph) = 0;
    virtual void EndOutline() = 0;
    /// Paints all that can be seen.
    virtual void Fill(const ORVGlyphPaint& paint) = 0;
    /// What comes until EndLayer is laid over what is there as one.
    virtual void BeginLayer(ORVGlyphBlend blend) = 0;
    /// Begins a layer of which only that shows which lies where something, or nothing, of the mask is. The
    /// mask comes first, until EndMask.
    /// @param isInverse  where nothing is
    /// @return false when there are no masks: EndMask does not follow, nor the mask
    [[nodiscard]] virtual bool BeginMaskedLayer(bool isInverse) = 0;
    virtual void EndMask() = 0;
    virtual void EndLayer() = 0;
    /// Whether there is use for more.
    virtual bool IsStopped() const = 0;
};

/// Paints a glyph.
/// @return false when the glyph is not painted in this way: nothing was handed out
ORV_PLATFORM_EXPORT bool ORVPaintGlyph(const ORVFontFace& face, std::uint32_t glyph, ORVGlyphPaintSink& sink);
/// Whether a glyph is painted in this way.
ORV_PLATFORM_EXPORT bool ORVIsPaintedGlyph(const ORVFontFace& face, std::uint32_t glyph);
