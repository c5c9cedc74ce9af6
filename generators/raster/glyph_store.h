// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <unordered_map>
#include <vector>

#include "generators/raster/raster_outline.h"
#include "platform/visualization/fonts/ORVFontFace.h"

/// The outline of a glyph as it is drawn: straight pieces, from the glyph's own origin.
struct RasterGlyph {
    struct Contour {
        std::uint32_t first = 0, count = 0;
    };
    std::vector<Contour> contours;  // closed
    std::vector<RasterPoint> points;
    std::vector<std::uint8_t> smooth;  // a point, whether it is inside a curve
    float top = 0.0F, bottom = 0.0F, left = 0.0F, right = 0.0F;
    bool clockwise = false;  // area of its contours taken together, y down

    bool IsEmpty() const { return contours.empty(); }
};

/// Makes each glyph of a page once for each map that it is drawn with.
class GlyphStore {
public:
    /// A face with the linear map that takes its units (an em is 1, y up) to pixels.
    struct Map {
        const ORVFontFace* face = nullptr;
        double m11 = 0.0, m12 = 0.0, m21 = 0.0, m22 = 0.0;
        friend bool operator==(const Map&, const Map&) = default;
    };

    /// @return the glyph; stays where it is until Clear
    const RasterGlyph* Find(const Map& map, std::uint32_t index);
    void Clear();

private:
    struct MapHash {
        std::size_t operator()(const Map& map) const;
    };

    std::deque<RasterGlyph> glyphs_;
    std::unordered_map<Map, std::uint32_t, MapHash> maps_;
    ORVKeptFaces keptFaces_;
    std::unordered_map<std::uint64_t, const RasterGlyph*> index_;  // by number of map and glyph
};
