// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"
#include "tests/generators/raster/plain_paint.h"

// Reference implementation of clips, layers, blend modes and masks: in floating point, one pixel at a time,
// each on a separate page.

/// Blends a colour with the one below it, both opaque.
std::array<double, 3> PlainBlend(ORVPrintBlendMode mode, const std::array<double, 3>& below,
                                 const std::array<double, 3>& over);

/// A page of white paper.
class PlainPage {
public:
    /// One number per pixel, by rows.
    using Map = std::vector<double>;
    /// Returns the colour painted at a pixel.
    using Paint = std::function<PlainColour(int x, int y)>;

    PlainPage(int width, int height);

    void Draw(const Map& coverage, const Paint& paint);
    void BeginClip(const Map& coverage);
    /// Nested boxes clip to their intersection.
    void BeginBoxClip(const ORVMathBox2D& box);
    void EndClip();
    void BeginLayer(const ORVPrintLayer& layer);
    void BeginMask(const ORVPrintMask& mask);
    void EndMask();
    void EndLayer();
    /// The page's colour at a pixel: red, green and blue from 0 to 1.
    std::array<double, 3> GetColour(int x, int y) const;

private:
    struct Pixel {
        std::array<double, 3> rgb{};  // not premultiplied
        double opacity = 0.0;
    };
    struct Clip {
        Map coverage;  // empty for a box
        ORVMathBox2D box;
    };
    struct Level {
        ORVPrintLayer layer;
        ORVPrintMask mask;
        std::vector<Pixel> seen;    // including the backdrop, unless the layer is isolated
        std::vector<Pixel> before;  // the backdrop
        Map group;                  // opacity of the level's own content
        Map shown;                  // coverage of its mask
        std::vector<Clip> clips;
    };
    /// The fraction of a pixel that remains visible inside clips and the boxes of a layer and its mask.
    double LeftOf(const Level& level, std::size_t pixel, const Level* ended) const;
    Level NewLevel(bool isIsolated) const;
    void Paste(Level& level, std::size_t pixel, ORVPrintBlendMode mode, const PlainColour& colour) const;

    int width_, height_;
    std::vector<Level> levels_;
};
