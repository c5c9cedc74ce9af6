// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"
#include "tests/generators/raster/plain_paint.h"

// Clips, layers, blend modes and masks as their definitions have them, in numbers of full precision, a pixel
// after the other and each on a page of its own.

/// The mode's mix of a colour with the one below it, both opaque.
std::array<double, 3> PlainBlend(ORVPrintBlendMode mode, const std::array<double, 3>& below,
                                 const std::array<double, 3>& over);

/// A page of white paper.
class PlainPage {
public:
    /// A number for each pixel, by rows.
    using Map = std::vector<double>;
    /// The colour that is painted at a pixel.
    using Paint = std::function<PlainColour(int x, int y)>;

    PlainPage(int width, int height);

    void Draw(const Map& coverage, const Paint& paint);
    void BeginClip(const Map& coverage);
    /// Boxes within each other cut off as the one that they have in common.
    void BeginBoxClip(const ORVMathBox2D& box);
    void EndClip();
    void BeginLayer(const ORVPrintLayer& layer);
    void BeginMask(const ORVPrintMask& mask);
    void EndMask();
    void EndLayer();
    /// The page's colour at a pixel, red, green and blue from 0 to 1.
    std::array<double, 3> GetColour(int x, int y) const;

private:
    struct Pixel {
        std::array<double, 3> rgb{};  // straight
        double opacity = 0.0;
    };
    struct Clip {
        Map coverage;  // empty for a box
        ORVMathBox2D box;
    };
    struct Level {
        ORVPrintLayer layer;
        ORVPrintMask mask;
        std::vector<Pixel> seen;    // with what lies below, unless it is isolated
        std::vector<Pixel> before;  // what there was when it began
        Map group;                  // opacity of the level's own content
        Map shown;                  // what its mask leaves
        std::vector<Clip> clips;
    };
    /// How much clips leave of a pixel, and boxes of a layer and its mask.
    double LeftOf(const Level& level, std::size_t pixel, const Level* ended) const;
    Level NewLevel(bool isIsolated) const;
    void Paste(Level& level, std::size_t pixel, ORVPrintBlendMode mode, const PlainColour& colour) const;

    int width_, height_;
    std::vector<Level> levels_;
};
