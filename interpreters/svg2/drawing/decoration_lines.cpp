// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/decoration_lines.h"

#include <algorithm>
#include <cmath>

#include "interpreters/svg2/tree/shapes.h"

namespace svg2 {
namespace {

constexpr double kMostPieces = 2000.0;  // of a line; with more, it is drawn through

/// The middle of what is `height` high, in place of the plain line.
double MiddleOf(const DecorationPlace& place, double height) {
    const double growth = (height - place.thickness) / 2.0;
    switch (place.grows) {
        case DecorationPlace::Grows::kDown: return place.middle - growth;
        case DecorationPlace::Grows::kUp: return place.middle + growth;
        case DecorationPlace::Grows::kBothWays: break;
    }
    return place.middle;
}

void AddBar(ORVPrintPath& path, double start, double length, double middle, double thickness) {
    AddRectangle(path, {start, middle - thickness / 2.0, length, thickness});
}

void AddDouble(ORVPrintPath& path, const DecorationPlace& place, double thickness) {
    const double middle = MiddleOf(place, 3.0 * thickness);
    AddBar(path, 0.0, place.length, middle + thickness, thickness);
    AddBar(path, 0.0, place.length, middle - thickness, thickness);
}

/// How many pieces of a length with gaps between them a line takes, and the gap with which the last one ends
/// the line.
double FitPieces(double whole, double piece, double& gap) {
    const double count = std::max(std::floor((whole + gap) / (piece + gap)), 1.0);
    if (count > 1.0) gap = (whole - count * piece) / (count - 1.0);
    return count;
}

bool AddDashes(ORVPrintPath& path, const DecorationPlace& place, double thickness) {
    constexpr double kThin = 3.0;  // px; thinner ones have longer dashes
    const double dash = std::min(thickness * (thickness < kThin ? 3.0 : 2.0), place.length);
    double gap = thickness * (thickness < kThin ? 2.0 : 1.0);
    const double count = FitPieces(place.length, dash, gap);
    if (!(count <= kMostPieces)) return false;
    const double middle = MiddleOf(place, thickness);
    for (double i = 0.0; i < count; ++i) AddBar(path, i * (dash + gap), dash, middle, thickness);
    return true;
}

bool AddDots(ORVPrintPath& path, const DecorationPlace& place, double thickness) {
    double gap = thickness;
    const double count = FitPieces(place.length, thickness, gap);
    if (!(count <= kMostPieces)) return false;
    const double radius = thickness / 2.0, middle = MiddleOf(place, thickness);
    for (double i = 0.0; i < count; ++i)
        AddEllipse(path, {radius + i * (thickness + gap), middle}, radius, radius);
    return true;
}

bool AddWave(ORVPrintPath& path, const DecorationPlace& place, double thickness) {
    // Curves of which both control points lie beside the middle of the wave, on either side: they reach
    // sqrt(3) / 6 of the way to these.
    const double reach = 3.0 * thickness + 1.0, amplitude = reach * std::sqrt(3.0) / 6.0;
    const double count = std::max(std::round(place.length / (4.0 * thickness + 3.0)), 1.0);
    if (!(count <= kMostPieces)) return false;
    const double wave = place.length / count;
    const double middle = MiddleOf(place, 2.0 * amplitude + thickness);
    const double top = middle + thickness / 2.0, bottom = middle - thickness / 2.0;
    path.MoveTo({0.0, top});
    for (double i = 0.0; i < count; ++i) {
        const double half = (i + 0.5) * wave;
        path.CubicTo({half, top + reach}, {half, top - reach}, {(i + 1.0) * wave, top});
    }
    path.LineTo({place.length, bottom});
    for (double i = count; i > 0.0; --i) {
        const double half = (i - 0.5) * wave;
        path.CubicTo({half, bottom - reach}, {half, bottom + reach}, {(i - 1.0) * wave, bottom});
    }
    path.Close();
    return true;
}

}  // namespace

void AddDecorationLine(ORVPrintPath& path, const DecorationPlace& place, DecorationStyle style,
                       double thickness) {
    bool isDrawn = false;
    if (thickness > 0.0 && place.length > 0.0) {
        switch (style) {
            case DecorationStyle::kSolid: break;
            case DecorationStyle::kDouble: return AddDouble(path, place, thickness);
            case DecorationStyle::kDotted: isDrawn = AddDots(path, place, thickness); break;
            case DecorationStyle::kDashed: isDrawn = AddDashes(path, place, thickness); break;
            case DecorationStyle::kWavy: isDrawn = AddWave(path, place, thickness); break;
        }
    }
    if (!isDrawn) AddBar(path, 0.0, place.length, MiddleOf(place, thickness), thickness);
}

}  // namespace svg2
