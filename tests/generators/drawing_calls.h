// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

// Shortcuts for drawing calls.

inline ORVPrintPath RectanglePath(double x, double y, double width, double height) {
    ORVPrintPath path;
    path.MoveTo({x, y});
    path.LineTo({x + width, y});
    path.LineTo({x + width, y + height});
    path.LineTo({x, y + height});
    path.Close();
    return path;
}

inline ORVPrintPageInfo PageInfo(double width, double height, unsigned int number = 1) {
    ORVPrintPageInfo page;
    page.number = number;
    page.width = width;
    page.height = height;
    return page;
}

inline int FillRectangle(ORVPrintGenerator& generator, double x, double y, double width, double height,
                         ORVPrintColour colour = {}) {
    ORVPrintFill fill;
    fill.colour = colour;
    const ORVPrintPath path = RectanglePath(x, y, width, height);
    return generator.DrawShape({path, {}, &fill, nullptr});
}

inline ORVMathBox2D BoxOf(double xMin, double yMin, double xMax, double yMax) {
    ORVMathBox2D box;
    box.Add({xMin, yMin});
    box.Add({xMax, yMax});
    return box;
}

/// A gradient from left to right of the unit square.
inline ORVPrintGradient Gradient(std::span<const ORVPrintGradientStop> stops,
                                 const ORVMathAffine2D& toPage = {}) {
    ORVPrintGradient gradient;
    gradient.end = {1.0, 0.0};
    gradient.stops = stops;
    gradient.toPage = toPage;
    return gradient;
}

/// Draws black text whose pen starts at (x, y).
inline int WriteText(ORVPrintGenerator& generator, const std::string& text, double x, double y,
                     const ORVTextStyle& style = {}) {
    const ORVTextLayout layout = ORVLayoutText(text, style);
    const ORVPrintFill fill;
    return generator.DrawText({layout, text, {1.0, 0.0, 0.0, -1.0, x, y}, &fill, nullptr, nullptr});
}

/// An image of a uniform colour.
inline ORVRef<ORVPixelImage> PlainImage(int width, int height, ORVPrintColour colour) {
    std::vector<std::uint8_t> pixels;
    for (int i = 0; i < width * height; ++i)
        pixels.insert(pixels.end(), {colour.red, colour.green, colour.blue, colour.opacity});
    return ORVRef<ORVPixelImage>(ORVPixelImage::CreateFromPixels(width, height, pixels));
}
