// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/GlyphPainter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <utility>

#include "interpreters/svg2/tree/shapes.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/visualization/fonts/ORVFontFace.h"

namespace svg2 {
namespace {

// Half the side of the square, in em, that is filled when there is no outline.
constexpr double kFar = 4.0;

/// Collects the outline of a glyph in em units, y up.
class OutlineOfGlyph final : public ORVGlyphOutlineSink {
public:
    explicit OutlineOfGlyph(ORVPrintPath& path) : path_(path) {}
    void MoveTo(double x, double y) override { path_.MoveTo(last_ = {x, y}); }
    void LineTo(double x, double y) override { path_.LineTo(last_ = {x, y}); }
    void QuadTo(double controlX, double controlY, double x, double y) override {
        const auto between = [&](const ORVMathPoint2D& end) {
            return ORVMathPoint2D{end.x + (controlX - end.x) * 2.0 / 3.0,
                                  end.y + (controlY - end.y) * 2.0 / 3.0};
        };
        const ORVMathPoint2D first = between(last_), second = between({x, y});
        path_.CubicTo(first, second, last_ = {x, y});
    }
    void CubicTo(double control1X, double control1Y, double control2X, double control2Y, double x,
                 double y) override {
        path_.CubicTo({control1X, control1Y}, {control2X, control2Y}, last_ = {x, y});
    }
    void Close() override { path_.Close(); }

private:
    ORVPrintPath& path_;
    ORVMathPoint2D last_;
};

ORVPrintBlendMode ModeOf(ORVGlyphBlend blend) {
    switch (blend) {
        case ORVGlyphBlend::kNormal: return ORVPrintBlendMode::kNormal;
        case ORVGlyphBlend::kScreen: return ORVPrintBlendMode::kScreen;
        case ORVGlyphBlend::kOverlay: return ORVPrintBlendMode::kOverlay;
        case ORVGlyphBlend::kDarken: return ORVPrintBlendMode::kDarken;
        case ORVGlyphBlend::kLighten: return ORVPrintBlendMode::kLighten;
        case ORVGlyphBlend::kColourDodge: return ORVPrintBlendMode::kColourDodge;
        case ORVGlyphBlend::kColourBurn: return ORVPrintBlendMode::kColourBurn;
        case ORVGlyphBlend::kHardLight: return ORVPrintBlendMode::kHardLight;
        case ORVGlyphBlend::kSoftLight: return ORVPrintBlendMode::kSoftLight;
        case ORVGlyphBlend::kDifference: return ORVPrintBlendMode::kDifference;
        case ORVGlyphBlend::kExclusion: return ORVPrintBlendMode::kExclusion;
        case ORVGlyphBlend::kMultiply: return ORVPrintBlendMode::kMultiply;
        case ORVGlyphBlend::kHue: return ORVPrintBlendMode::kHue;
        case ORVGlyphBlend::kSaturation: return ORVPrintBlendMode::kSaturation;
        case ORVGlyphBlend::kColour: return ORVPrintBlendMode::kColour;
        case ORVGlyphBlend::kLuminosity: return ORVPrintBlendMode::kLuminosity;
    }
    return ORVPrintBlendMode::kNormal;
}

ORVMathPoint2D Between(const ORVMathPoint2D& a, const ORVMathPoint2D& b, double share) {
    return {a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)};
}

/// Maps a position on a gradient into its range according to the spread method.
double Spread(ORVGlyphPaint::Spread spread, double t) {
    switch (spread) {
        case ORVGlyphPaint::Spread::kPad: break;
        case ORVGlyphPaint::Spread::kRepeat: return t - std::floor(t);
        case ORVGlyphPaint::Spread::kReflect: {
            const double turn = t - 2.0 * std::floor(t / 2.0);
            return turn > 1.0 ? 2.0 - turn : turn;
        }
    }
    return t;
}

ORVPrintColour Mix(const ORVPrintColour& a, const ORVPrintColour& b, double share) {
    const auto mix = [&](std::uint8_t from, std::uint8_t to) {
        return static_cast<std::uint8_t>(std::lround(from + share * (to - from)));
    };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), mix(a.opacity, b.opacity)};
}

ORVPrintColour ColourAt(const std::vector<ORVPrintGradientStop>& stops, double offset) {
    if (offset <= stops.front().offset) return stops.front().colour;
    for (std::size_t i = 1; i < stops.size(); ++i) {
        if (offset > stops[i].offset) continue;
        const double width = stops[i].offset - stops[i - 1].offset;
        return width > 0.0 ? Mix(stops[i - 1].colour, stops[i].colour, (offset - stops[i - 1].offset) / width)
                           : stops[i].colour;
    }
    return stops.back().colour;
}

/// Normalises gradient offsets to the range 0 to 1.
/// @return false if the gradient is a single colour
bool Normalise(const ORVGlyphPaint& paint, std::vector<ORVPrintGradientStop>& stops,
               ORVPrintGradient& gradient) {
    const double first = stops.front().offset, last = stops.back().offset;
    const double width = last > first ? last - first : 1.0;
    if (stops.size() < 2) return false;
    for (ORVPrintGradientStop& stop : stops) stop.offset = (stop.offset - first) / width;
    const double end = first + width;
    gradient.start = Between(paint.start, paint.end, first);
    gradient.end = Between(paint.start, paint.end, end);
    gradient.startRadius = std::max(0.0, paint.startRadius + first * (paint.endRadius - paint.startRadius));
    gradient.endRadius = std::max(0.0, paint.startRadius + end * (paint.endRadius - paint.startRadius));
    const bool isPoint = gradient.start.x == gradient.end.x && gradient.start.y == gradient.end.y;
    if (paint.kind == ORVGlyphPaint::Kind::kLinear) return !isPoint;
    return gradient.startRadius + gradient.endRadius > 0.0 &&
           !(isPoint && gradient.startRadius == gradient.endRadius);
}

ORVPrintGradient::Spread SpreadOf(ORVGlyphPaint::Spread spread) {
    switch (spread) {
        case ORVGlyphPaint::Spread::kPad: break;
        case ORVGlyphPaint::Spread::kReflect: return ORVPrintGradient::Spread::kReflect;
        case ORVGlyphPaint::Spread::kRepeat: return ORVPrintGradient::Spread::kRepeat;
    }
    return ORVPrintGradient::Spread::kPad;
}

}  // namespace

void GlyphPainter::BeginOutline(std::uint32_t glyph, const ORVMathAffine2D& toGlyph) {
    Outline& outline = outlines_.emplace_back();
    outline.toPage = toPage_ * toGlyph;
    OutlineOfGlyph collector(outline.path);
    face_.DrawGlyph(glyph, 1.0, collector);
}

void GlyphPainter::EndOutline() {
    if (outlines_.back().isClip) Do(generator_.EndClipPath());
    outlines_.pop_back();
}

/// Turns the first `count` outlines into clips.
void GlyphPainter::CutToOutlines(std::size_t count) {
    for (std::size_t i = 0; i < count && !IsStopped(); ++i) {
        Outline& outline = outlines_[i];
        if (outline.isClip) continue;
        Do(generator_.BeginClipPath({outline.path, outline.toPage, false}));
        outline.isClip = !IsStopped();
    }
}

ORVPrintColour GlyphPainter::ColourOf(const ORVGlyphPaintColour& colour) const {
    ORVPrintColour made = text_;
    if (!colour.isTextColour) made = {colour.red, colour.green, colour.blue, 255};
    made.opacity = static_cast<std::uint8_t>(std::lround(255.0 * colour.opacity));
    return made;
}

void GlyphPainter::DrawFilled(const ORVPrintPath& path, const ORVMathAffine2D& toPage,
                              const ORVPrintFill& fill) {
    if (IsStopped()) return;
    if (!budget_.TakeElement())
        Do(ORVPrintModelRender::kTooManyRepeats);
    else if (!path.IsEmpty() && toPage.IsFinite())
        Do(generator_.DrawShape({path, toPage, &fill, nullptr}));
}

void GlyphPainter::Fill(const ORVGlyphPaint& paint) {
    const bool isSweep = paint.kind == ORVGlyphPaint::Kind::kSweep && paint.stops.size() > 1;
    if (!isSweep && !outlines_.empty() && !outlines_.back().isClip) {
        CutToOutlines(outlines_.size() - 1);
        FillPath(paint, outlines_.back().path, outlines_.back().toPage);
        return;
    }
    CutToOutlines(outlines_.size());
    if (isSweep) {
        Sweep(paint);
        return;
    }
    ORVPrintPath square;
    AddRectangle(square, {-kFar, -kFar, 2.0 * kFar, 2.0 * kFar});
    FillPath(paint, square, toPage_);
}

void GlyphPainter::FillPath(const ORVGlyphPaint& paint, const ORVPrintPath& path,
                            const ORVMathAffine2D& toPage) {
    ORVPrintFill fill;
    if (paint.kind == ORVGlyphPaint::Kind::kColour) {
        fill.colour = ColourOf(paint.colour);
        DrawFilled(path, toPage, fill);
        return;
    }
    std::vector<ORVPrintGradientStop> stops;
    stops.reserve(paint.stops.size());
    for (const ORVGlyphPaint::Stop& stop : paint.stops) stops.push_back({stop.offset, ColourOf(stop.colour)});
    fill.colour = stops.front().colour;
    ORVPrintGradient gradient;
    gradient.toPage = toPage_ * paint.toGlyph;
    if (Normalise(paint, stops, gradient) && gradient.toPage.Inverse()) {
        gradient.kind = paint.kind == ORVGlyphPaint::Kind::kLinear ? ORVPrintGradient::Kind::kLinear
                                                                   : ORVPrintGradient::Kind::kRadial;
        gradient.spread = SpreadOf(paint.spread);
        gradient.stops = stops;
        fill.gradient = &gradient;
    } else {
        fill.colour = stops.back().colour;
    }
    DrawFilled(path, toPage, fill);
}

/// Draws a sweep gradient, which no format supports, as wedges of one colour each. Opaque wedges extend below
/// the next one, so that no gaps show between them.
void GlyphPainter::Sweep(const ORVGlyphPaint& paint) {
    constexpr int kWedges = 180;
    constexpr double kWholeTurn = 360.0, kStep = kWholeTurn / kWedges, kOverlap = 3.0 * kStep;
    std::vector<ORVPrintGradientStop> stops;
    bool isOpaque = true;
    for (const ORVGlyphPaint::Stop& stop : paint.stops) {
        stops.push_back({stop.offset, ColourOf(stop.colour)});
        isOpaque = isOpaque && stops.back().colour.opacity == 255;
    }
    const double first = stops.front().offset, last = stops.back().offset;
    const double span = (paint.endAngle - paint.startAngle) * (last - first);
    const double start = paint.startAngle + first * (paint.endAngle - paint.startAngle);
    if (isOpaque) {  // at the centre, no wedge covers a whole pixel
        const double middle = (first + last) / 2.0;
        ORVPrintPath square;
        AddRectangle(square, {-kFar, -kFar, 2.0 * kFar, 2.0 * kFar});
        DrawFilled(square, toPage_, {.colour = ColourAt(stops, middle)});
    }
    for (int i = 0; i < kWedges && !IsStopped(); ++i) {
        const double from = i * kStep, middle = from + kStep / 2.0;
        const double t = span == 0.0 ? (middle < start ? -1.0 : 2.0) : (middle - start) / span;
        const ORVPrintFill fill{.colour = ColourAt(stops, first + Spread(paint.spread, t) * (last - first))};
        ORVPrintPath wedge;
        wedge.MoveTo(paint.start);
        for (const double angle : {from, std::min(from + kStep + (isOpaque ? kOverlap : 0.0), kWholeTurn)}) {
            const double radians = angle * std::numbers::pi / 180.0;
            wedge.LineTo({paint.start.x + 2.0 * kFar * std::cos(radians),
                          paint.start.y + 2.0 * kFar * std::sin(radians)});
        }
        wedge.Close();
        DrawFilled(wedge, toPage_ * paint.toGlyph, fill);
    }
}

void GlyphPainter::BeginLayer(ORVGlyphBlend blend) {
    CutToOutlines(outlines_.size());
    ORVPrintLayer layer;
    layer.blend = ModeOf(blend);
    layer.box = page_;
    if (!IsStopped()) Do(generator_.BeginLayer(layer));
}

bool GlyphPainter::BeginMaskedLayer(bool isInverse) {
    CutToOutlines(outlines_.size());
    ORVPrintLayer layer;
    layer.hasMask = true;
    layer.box = page_;
    if (!IsStopped()) Do(generator_.BeginLayer(layer));
    if (IsStopped()) return false;
    ORVPrintMask mask;
    mask.kind = isInverse ? ORVPrintMask::Kind::kLuminance : ORVPrintMask::Kind::kOpacity;
    mask.box = page_;
    const int answer = generator_.BeginMask(mask);
    if (answer == ORVPrintGenerator::kSkipMask) return false;
    Do(answer);
    if (isInverse) {
        ORVPrintPath all;
        AddRectangle(all, {page_.xMin, page_.yMin, page_.xMax - page_.xMin, page_.yMax - page_.yMin});
        DrawFilled(all, {}, {.colour = {255, 255, 255, 255}});
    }
    return !IsStopped();
}

void GlyphPainter::EndMask() {
    if (!IsStopped()) Do(generator_.EndMask());
}

void GlyphPainter::EndLayer() {
    if (!IsStopped()) Do(generator_.EndLayer());
}

}  // namespace svg2
