// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_gradients.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "generators/common/number_text.h"
#include "generators/common/path_range.h"
#include "generators/pdf/pdf_object_pool.h"
#include "generators/pdf/pdf_syntax.h"

namespace {

using Stop = ORVPrintGradientStop;

// Offsets of stops are written to a millionth of the gradient.
constexpr int kOffsetPlaces = 6;
constexpr std::int64_t kWhole = 1'000'000;
// Maximum number of repetitions written out. On an A4 page, more would be finer than printer dots.
constexpr double kMostPeriods = 4096.0;
// Fraction of a gradient's length used for a different colour at an end.
constexpr double kEdge = 0.001;

/// Which part of the stops a function describes.
enum class Channel : std::uint8_t { kColour, kOpacity };

bool IsSame(const ORVPrintColour& a, const ORVPrintColour& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.opacity == b.opacity;
}

std::int64_t Place(const Stop& stop) { return ToFixed(std::clamp(stop.offset, 0.0, 1.0), kOffsetPlaces); }

/// A part of a stitching function, over a span of its domain.
struct Part {
    double from, to;
    std::string function;             ///< over a domain from 0 to 1
    double atFrom = 0.0, atTo = 1.0;  ///< span of that function used for the part
};

void AppendOffset(std::string& text, double offset) {
    AppendDecimal(text, offset, kOffsetPlaces);
    text += ' ';
}

std::string Stitch(std::span<const Part> parts) {
    std::string text = "<</FunctionType 3/Domain[";
    AppendOffset(text, parts.front().from);
    AppendOffset(text, parts.back().to);
    text += "]/Functions[";
    for (const Part& part : parts) text += part.function + " ";
    text += "]/Bounds[";
    for (const Part& part : parts.subspan(1)) AppendOffset(text, part.from);
    text += "]/Encode[";
    for (const Part& part : parts) {
        AppendOffset(text, part.atFrom);
        AppendOffset(text, part.atTo);
    }
    return text + "]>>";
}

void AppendValues(std::string& text, const ORVPrintColour& colour, Channel channel) {
    // Opacities are written as RGB greys: some readers alter single-component greys in a shading.
    const std::uint8_t gray = colour.opacity;
    const bool isOpacity = channel == Channel::kOpacity;
    char separator = '[';
    for (const std::uint8_t value :
         {isOpacity ? gray : colour.red, isOpacity ? gray : colour.green, isOpacity ? gray : colour.blue}) {
        text += separator;
        AppendDecimal(text, value / 255.0, kPdfPlaces);
        separator = ' ';
    }
    text += ']';
}

/// A function over a domain from 0 to 1 that interpolates between two colours.
std::string Ramp(const ORVPrintColour& from, const ORVPrintColour& to, Channel channel) {
    std::string text = "<</FunctionType 2/Domain[0 1]/N 1/C0";
    AppendValues(text, from, channel);
    text += "/C1";
    AppendValues(text, to, channel);
    return text + ">>";
}

/// The function of the stops, over a domain from 0 to 1.
std::string FunctionOf(std::span<const Stop> stops, Channel channel) {
    std::vector<Part> parts;
    const auto add = [&](std::int64_t from, std::int64_t to, const Stop& first, const Stop& last) {
        if (from < to)
            parts.push_back({static_cast<double>(from) / kWhole, static_cast<double>(to) / kWhole,
                             Ramp(first.colour, last.colour, channel)});
    };
    add(0, Place(stops.front()), stops.front(), stops.front());
    for (std::size_t i = 1; i < stops.size(); ++i)
        add(Place(stops[i - 1]), Place(stops[i]), stops[i - 1], stops[i]);
    add(Place(stops.back()), kWhole, stops.back(), stops.back());
    return parts.size() == 1 ? parts.front().function : Stitch(parts);
}

/// A gradient in normalised coordinates for a shading: a line along the x axis from 0 to 1, or circles with
/// the first centre at 0, the second on the x axis, and the larger radius 1.
struct Layout {
    ORVMathAffine2D toContent;
    bool isRadial = false;
    double distance = 1.0;                   // from the start to the end point
    double startRadius = 0.0, growth = 0.0;  // increase of the radius from 0 to 1
    double low = 0.0, high = 1.0;            // parameters that the shading spans
    bool isMean = false;                     // too fine to be visible
    double RadiusAt(double place) const { return startRadius + place * growth; }
};

Layout LayOut(const ORVPrintGradient& gradient) {
    Layout layout;
    const double dx = gradient.end.x - gradient.start.x, dy = gradient.end.y - gradient.start.y;
    const double distance = std::hypot(dx, dy);
    const ORVMathPoint2D& origin = gradient.start;
    if (gradient.kind == ORVPrintGradient::Kind::kLinear) {
        layout.toContent = gradient.toPage * ORVMathAffine2D{dx, -dy, dy, dx, origin.x, origin.y};
        return layout;
    }
    const double size = std::max(gradient.startRadius, gradient.endRadius);
    if (!(size > 0.0)) {
        // Without extent: the matrix is not invertible, which the caller checks.
        layout.toContent = {0.0, 0.0, 0.0, 0.0, origin.x, origin.y};
        return layout;
    }
    const double cosine = distance > 0.0 ? dx / distance : 1.0, sine = distance > 0.0 ? dy / distance : 0.0;
    layout.isRadial = true;
    layout.toContent = gradient.toPage * ORVMathAffine2D{size * cosine, -size * sine, size * sine,
                                                         size * cosine, origin.x,     origin.y};
    layout.distance = distance / size;
    layout.startRadius = gradient.startRadius / size;
    layout.growth = gradient.endRadius / size - layout.startRadius;
    return layout;
}

/// Extent of a box in the coordinates of a layout.
struct Corners {
    double xMin = 0.0, xMax = 0.0, farthest = 0.0;  // distance of the farthest corner from the origin
};

Corners FindCorners(const ORVMathBox2D& box, const ORVMathAffine2D& toLayout) {
    ORVMathBox2D mapped;
    double farthest = 0.0;
    for (const double x : {box.xMin, box.xMax})
        for (const double y : {box.yMin, box.yMax}) {
            const ORVMathPoint2D corner = toLayout({x, y});
            mapped.Add(corner);
            farthest = std::max(farthest, std::hypot(corner.x, corner.y));
        }
    return {mapped.xMin, mapped.xMax, farthest};
}

/// Rounds up to a power of two, so that gradients of similar size share objects.
double RoundUp(double count) {
    return static_cast<double>(std::bit_ceil(static_cast<std::uint32_t>(std::max(count, 1.0))));
}

void RepeatLine(Layout& layout, const Corners& corners, bool isMirrored) {
    const double unit = isMirrored ? 2.0 : 1.0;
    const double first = std::floor(corners.xMin / unit) * unit, count = std::ceil(corners.xMax - first);
    if (!(count <= kMostPeriods) || !std::isfinite(first)) {
        layout.isMean = true;
        return;
    }
    layout.toContent = layout.toContent * ORVMathAffine2D::Translation(first, 0.0);
    layout.high = RoundUp(count);
}

/// Repeats circles as far as they touch the box and have a positive radius.
void RepeatCircles(Layout& layout, const Corners& corners) {
    const double d = layout.distance, r = layout.startRadius, growth = layout.growth;
    if (!(corners.farthest <= kMostPeriods * (d + std::fabs(growth)))) {
        layout.isMean = true;
        return;
    }
    // Nested circles contain the box once they are large enough; others move past it.
    const bool isNested = std::fabs(growth) >= d;
    const double reach = isNested ? corners.farthest - r : corners.farthest + r;
    const auto places = [&](double speed) {
        if (!(reach > 0.0)) return 0.0;
        // Touching circles never move past each other.
        const double most = kMostPeriods * std::fabs(speed);
        return most > reach ? std::min(std::ceil(reach / std::fabs(speed)), kMostPeriods) : kMostPeriods;
    };
    if (isNested) {
        const double outwards = RoundUp(places(std::fabs(growth) - d));
        layout.low = growth > 0.0 ? -kMostPeriods : -outwards;
        layout.high = growth > 0.0 ? outwards : kMostPeriods;
    } else {
        layout.low = -RoundUp(places(d + growth));
        layout.high = RoundUp(places(d - growth));
    }
    if (growth > 0.0) layout.low = std::max(layout.low, -r / growth);
    if (growth < 0.0) layout.high = std::min(layout.high, r / -growth);
}

/// Writes the objects of a gradient.
class GradientWriter {
public:
    GradientWriter(const ORVPrintGradient& gradient, const Layout& layout, PdfObjectPool& pool)
        : gradient_(gradient), layout_(layout), pool_(pool) {}

    unsigned int WriteShading(Channel channel) {
        const unsigned int function =
            gradient_.spread == ORVPrintGradient::Spread::kPad ? FindPadded(channel) : FindRepeated(channel);
        std::string text = layout_.isRadial ? "<</ShadingType 3" : "<</ShadingType 2";
        text += "/ColorSpace/DeviceRGB/Coords[" + Coordinates(layout_.low) + Coordinates(layout_.high) + "]";
        if (layout_.low != 0.0 || layout_.high != 1.0) {
            text += "/Domain[";
            AppendOffset(text, layout_.low);
            AppendOffset(text, layout_.high);
            text += ']';
        }
        return pool_.Find(text + "/Extend[true true]/Function " + PdfReference(function) + ">>");
    }

private:
    unsigned int FindBase(Channel channel) { return pool_.Find(FunctionOf(gradient_.stops, channel)); }

    /// If several stops are at an end, one of them determines the colour beyond.
    unsigned int FindPadded(Channel channel) {
        const std::span<const Stop> stops = gradient_.stops;
        const unsigned int base = FindBase(channel);
        const Stop* first = &stops.front();
        for (const Stop& stop : stops)
            if (Place(stop) == 0) first = &stop;
        const Stop* last = &stops.back();
        for (std::size_t i = stops.size(); i-- > 0 && Place(stops[i]) == kWhole;) last = &stops[i];
        const bool differsBefore = Place(stops.front()) == 0 &&
                                   !IsSame(first->colour, stops.front().colour) &&
                                   layout_.RadiusAt(-kEdge) >= 0.0;
        const bool differsBehind =
            !IsSame(last->colour, stops.back().colour) && layout_.RadiusAt(1.0 + kEdge) >= 0.0;
        std::vector<Part> parts{{0.0, 1.0, PdfReference(base)}};
        const auto plain = [&](const Stop& stop) { return Ramp(stop.colour, stop.colour, channel); };
        if (differsBefore) parts.insert(parts.begin(), {layout_.low = -kEdge, 0.0, plain(stops.front())});
        if (differsBehind) parts.push_back({1.0, layout_.high = 1.0 + kEdge, plain(stops.back())});
        return parts.size() == 1 ? base : pool_.Find(Stitch(parts));
    }

    unsigned int FindRepeated(Channel channel) {
        const unsigned int base = FindBase(channel);
        const double low = layout_.low, high = layout_.high;
        if (low == 0.0 && high == 1.0) return base;
        const bool isMirrored = gradient_.spread == ORVPrintGradient::Spread::kReflect;
        std::string key = std::to_string(base) + (isMirrored ? " mirrored " : " repeated ");
        AppendOffset(key, low);
        AppendOffset(key, high);
        return pool_.FindBy(std::move(key), [&](unsigned int object, std::string_view /*key*/) {
            std::vector<Part> parts;
            for (double period = std::floor(low); period < high; ++period) {
                const double from = std::max(low, period), to = std::min(high, period + 1.0);
                if (ToFixed(from, kOffsetPlaces) >= ToFixed(to, kOffsetPlaces)) continue;
                const bool isBackwards = isMirrored && std::fmod(period, 2.0) != 0.0;
                const auto within = [&](double place) {
                    return isBackwards ? period + 1.0 - place : place - period;
                };
                parts.push_back({from, to, PdfReference(base), within(from), within(to)});
            }
            pool_.GetFile().WriteObject(object, Stitch(parts));
        });
    }

    /// The coordinates of one end of the shading.
    std::string Coordinates(double place) const {
        constexpr int kDigits = 9;
        std::string text;
        AppendSignificant(text, place * layout_.distance, kDigits);
        text += " 0 ";
        if (layout_.isRadial) {
            AppendSignificant(text, std::max(layout_.RadiusAt(place), 0.0), kDigits);
            text += ' ';
        }
        return text;
    }

    const ORVPrintGradient& gradient_;
    Layout layout_;
    PdfObjectPool& pool_;
};

/// The mean colour of all stops.
ORVPrintColour Mean(std::span<const Stop> stops) {
    std::array<double, 4> sums{};
    const auto add = [&](double length, const ORVPrintColour& colour) {
        const std::array<std::uint8_t, 4> parts{colour.red, colour.green, colour.blue, colour.opacity};
        for (std::size_t i = 0; i < parts.size(); ++i) sums[i] += length * parts[i];
    };
    add(std::clamp(stops.front().offset, 0.0, 1.0), stops.front().colour);
    for (std::size_t i = 1; i < stops.size(); ++i) {
        const double half = 0.5 * std::max(stops[i].offset - stops[i - 1].offset, 0.0);
        add(half, stops[i - 1].colour);
        add(half, stops[i].colour);
    }
    add(1.0 - std::clamp(stops.back().offset, 0.0, 1.0), stops.back().colour);
    const auto rounded = [](double value) {
        return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
    };
    return {rounded(sums[0]), rounded(sums[1]), rounded(sums[2]), rounded(sums[3])};
}

/// Writes a graphics state that applies the opacities of a gradient.
unsigned int WriteOpacities(GradientWriter& writer, const Layout& layout, const ORVMathBox2D& painted,
                            PdfObjectPool& pool) {
    const unsigned int shading = writer.WriteShading(Channel::kOpacity);
    std::string entries = "/Subtype/Form/Group<</S/Transparency/CS/DeviceRGB/I true>>/BBox";
    AppendPdfBox(entries,
                 {std::floor(painted.xMin), std::ceil(painted.xMax), std::floor(painted.yMin),
                  std::ceil(painted.yMax)},
                 0);
    entries += "/Resources<</Shading<</S " + PdfReference(shading) + ">>>>";
    std::string content;
    AppendPdfMap(content, layout.toContent);
    const unsigned int group = pool.FindStream(entries, content + "cm /S sh\n");
    return pool.Find("<</SMask<</S/Luminosity/G " + PdfReference(group) + ">>>>");
}

}  // namespace

void AppendPdfBox(std::string& text, const ORVMathBox2D& box, int places) {
    char separator = '[';
    for (const double side : {box.xMin, box.yMin, box.xMax, box.yMax}) {
        text += separator;
        AppendDecimal(text, side, places);
        separator = ' ';
    }
    text += ']';
}

PdfPaint MakePdfGradientPaint(const ORVPrintGradient& gradient, const ORVMathBox2D& painted,
                              const ORVMathAffine2D& toDefault, PdfObjectPool& pool) {
    const std::span<const Stop> stops = gradient.stops;
    if (stops.empty()) return {{0, 0, 0, 0}};
    Layout layout = LayOut(gradient);
    const std::optional<ORVMathAffine2D> toLayout = layout.toContent.Inverse();
    if (!toLayout) return {stops.back().colour};
    if (gradient.spread != ORVPrintGradient::Spread::kPad) {
        const Corners corners = FindCorners(painted, *toLayout);
        if (layout.isRadial)
            RepeatCircles(layout, corners);
        else
            RepeatLine(layout, corners, gradient.spread == ORVPrintGradient::Spread::kReflect);
    }
    if (layout.isMean) return {Mean(stops)};

    PdfPaint paint;
    paint.colour.opacity = stops.front().colour.opacity;
    GradientWriter writer(gradient, layout, pool);
    std::string pattern =
        "<</PatternType 2/Shading " + PdfReference(writer.WriteShading(Channel::kColour)) + "/Matrix[";
    AppendPdfMap(pattern, toDefault * layout.toContent);
    paint.pattern = pool.Find(pattern + "]>>");
    const bool isUniform = std::all_of(stops.begin(), stops.end(), [&](const Stop& stop) {
        return stop.colour.opacity == paint.colour.opacity;
    });
    if (!isUniform) {
        paint.colour.opacity = 255;
        paint.mask = WriteOpacities(writer, layout, painted, pool);
    }
    return paint;
}
