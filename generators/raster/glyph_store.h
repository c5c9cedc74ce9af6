// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <unordered_map>
#include <vector>

#include "generators/raster/raster_outline.h"
#include "platform/visualization/fonts/ORVFontFace.h"

/// A flattened glyph outline, relative to the glyph's origin.
struct RasterGlyph {
    struct Contour {
        std::uint32_t first = 0, count = 0;
    };
    std::vector<Contour> contours;  // closed
    std::vector<RasterPoint> points;
    std::vector<std::uint8_t> smooth;  // for each point, whether it is inside a curve
    float top = 0.0F, bottom = 0.0F, left = 0.0F, right = 0.0F;
    bool clockwise = false;  // orientation of the summed area of all contours, y down

    bool IsEmpty() const { return contours.empty(); }
};

/// Caches the glyphs of a page, one for each transformation they are drawn with.
class GlyphStore {
public:
    /// A face and the linear transformation from its em units (y up) to pixels.
    struct Map {
        const ORVFontFace* face = nullptr;
        double m11 = 0.0, m12 = 0.0, m21 = 0.0, m22 = 0.0;
        friend bool operator==(const Map&, const Map&) = default;
    };

    /// @return the glyph; the pointer is valid until Clear
    const RasterGlyph* Find(const Map& map, std::uint32_t index);
    void Clear();

private:
    struct MapHash {
        std::size_t operator()(const Map& map) const;
    };

    std::deque<RasterGlyph> glyphs_;
    std::unordered_map<Map, std::uint32_t, MapHash> maps_;
    ORVKeptFaces keptFaces_;
    std::unordered_map<std::uint64_t, const RasterGlyph*> index_;  // by index of the map and glyph index
};
