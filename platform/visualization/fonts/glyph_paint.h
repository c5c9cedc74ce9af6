// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/system/ORVBaseObject.h"

class ORVFontFace;

/// A colour in a colour glyph.
struct ORVGlyphPaintColour {
    bool isTextColour = true;  ///< use the colour of the text instead of the components below
    std::uint8_t red = 0, green = 0, blue = 0;
    double opacity = 1.0;  ///< 0 to 1, multiplied by the opacity of the text
};

/// The paint of an area of a colour glyph: a colour or a gradient. Coordinates are in em of the glyph, y up,
/// before `toGlyph`.
struct ORVGlyphPaint {
    enum class Kind : std::uint8_t { kColour, kLinear, kRadial, kSweep };
    enum class Spread : std::uint8_t { kPad, kReflect, kRepeat };
    struct Stop {
        double offset = 0.0;
        ORVGlyphPaintColour colour;
    };

    Kind kind = Kind::kColour;
    Spread spread = Spread::kPad;
    ORVGlyphPaintColour colour;  ///< for kColour
    std::vector<Stop> stops;     ///< for gradients; at least one, in ascending order of offset
    ORVMathPoint2D start, end;   ///< ends of the line, or centres of the circles; kSweep has only `start`
    double startRadius = 0.0;    ///< for kRadial
    double endRadius = 0.0;      ///< for kRadial
    double startAngle = 0.0;     ///< for kSweep, degrees, counter-clockwise from the x axis
    double endAngle = 0.0;       ///< as `startAngle`
    ORVMathAffine2D toGlyph;
};

/// Blend mode of a layer in a colour glyph.
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

/// Receives the drawing operations of a colour glyph (COLR version 1). All calls except Fill are paired and
/// nested.
class ORV_PLATFORM_EXPORT ORVGlyphPaintSink {
public:
    virtual ~ORVGlyphPaintSink() = default;
    /// Clips to the outline of another glyph until EndOutline.
    virtual void BeginOutline(std::uint32_t glyph, const ORVMathAffine2D& toGlyph) = 0;
    virtual void EndOutline() = 0;
    /// Paints the current clip area.
    virtual void Fill(const ORVGlyphPaint& paint) = 0;
    /// Begins a layer, which is composited as a whole at EndLayer.
    virtual void BeginLayer(ORVGlyphBlend blend) = 0;
    /// Begins a layer that shows only where its mask is painted. The mask is drawn first, up to EndMask.
    /// @param isInverse  show the layer only where the mask is not painted
    /// @return false when masks are not supported: neither the mask nor EndMask follows
    [[nodiscard]] virtual bool BeginMaskedLayer(bool isInverse) = 0;
    virtual void EndMask() = 0;
    virtual void EndLayer() = 0;
    /// True when the sink needs no more calls.
    virtual bool IsStopped() const = 0;
};

/// Draws a colour glyph.
/// @return false when the glyph has no COLR version 1 definition; the sink is not called
ORV_PLATFORM_EXPORT bool ORVPaintGlyph(const ORVFontFace& face, std::uint32_t glyph, ORVGlyphPaintSink& sink);
/// Whether a glyph has a COLR version 1 definition.
ORV_PLATFORM_EXPORT bool ORVIsPaintedGlyph(const ORVFontFace& face, std::uint32_t glyph);
