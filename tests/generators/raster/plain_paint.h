// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "platform/print/ORVPrintGenerator.h"

// Reference implementation of gradient colours, one pixel at a time.

struct PlainColour {
    std::array<double, 3> rgb{};  // from 0 to 1, not premultiplied
    double opacity = 0.0;
};

inline PlainColour PlainColourOf(const ORVPrintColour& colour) {
    return {{colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0}, colour.opacity / 255.0};
}

/// The colour at an offset of a gradient.
inline PlainColour PlainColourAt(const ORVPrintGradient& gradient, double place) {
    if (gradient.spread == ORVPrintGradient::Spread::kRepeat) place -= std::floor(place);
    if (gradient.spread == ORVPrintGradient::Spread::kReflect) {
        place -= 2.0 * std::floor(place / 2.0);
        if (place > 1.0) place = 2.0 - place;
    }
    const auto& stops = gradient.stops;
    if (place < stops.front().offset) return PlainColourOf(stops.front().colour);
    for (std::size_t i = stops.size() - 1;; --i) {
        if (place < stops[i].offset) continue;
        PlainColour colour = PlainColourOf(stops[i].colour);
        if (i + 1 == stops.size()) return colour;
        const double share = (place - stops[i].offset) / (stops[i + 1].offset - stops[i].offset);
        const PlainColour next = PlainColourOf(stops[i + 1].colour);
        for (std::size_t k = 0; k < 3; ++k) colour.rgb[k] += (next.rgb[k] - colour.rgb[k]) * share;
        colour.opacity += (next.opacity - colour.opacity) * share;
        return colour;
    }
}

/// The offset of a gradient at a point of the page; empty if nothing is painted there.
inline std::optional<double> PlainPlaceAt(const ORVPrintGradient& gradient, const ORVMathPoint2D& pagePoint) {
    const ORVMathAffine2D& m = gradient.toPage;
    const double x = pagePoint.x - m.dx, y = pagePoint.y - m.dy, area = m.m11 * m.m22 - m.m12 * m.m21;
    const double px = (m.m22 * x - m.m12 * y) / area - gradient.start.x;
    const double py = (m.m11 * y - m.m21 * x) / area - gradient.start.y;
    const double dx = gradient.end.x - gradient.start.x, dy = gradient.end.y - gradient.start.y;
    if (gradient.kind == ORVPrintGradient::Kind::kLinear) return (px * dx + py * dy) / (dx * dx + dy * dy);
    const double r = gradient.startRadius, growth = gradient.endRadius - r;
    // Solves (p - t d)^2 = (r + t growth)^2 for the circles through the point; the greatest t with a radius
    // counts.
    const double a = dx * dx + dy * dy - growth * growth;
    const double b = px * dx + py * dy + r * growth, c = px * px + py * py - r * r;
    std::optional<double> best;
    const auto offer = [&](double t) {
        if (r + t * growth >= 0.0 && (!best || t > *best)) best = t;
    };
    if (a == 0.0) {
        if (b != 0.0) offer(c / (2.0 * b));
    } else if (b * b >= a * c) {
        const double root = std::sqrt(b * b - a * c);
        offer((b + root) / a);
        offer((b - root) / a);
    }
    return best;
}
