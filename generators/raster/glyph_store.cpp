// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/glyph_store.h"

#include <algorithm>
#include <functional>
#include <limits>

#include "generators/raster/curve_flattening.h"
#include "platform/visualization/fonts/ORVFontFace.h"

namespace {

/// Flattens the outline of a glyph.
class GlyphFlattening final : public ORVGlyphOutlineSink {
public:
    GlyphFlattening(RasterGlyph& glyph, const ORVMathAffine2D& map) : glyph_(glyph), map_(map) {}

    void MoveTo(double x, double y) override {
        Close();
        current_ = start_ = map_({x, y});
        Add(current_, false);
    }
    void LineTo(double x, double y) override { Add(current_ = map_({x, y}), false); }
    void QuadTo(double controlX, double controlY, double x, double y) override {
        const ORVMathPoint2D control = map_({controlX, controlY}), end = map_({x, y});
        AddCurve({current_.x + (control.x - current_.x) * 2.0 / 3.0,
                  current_.y + (control.y - current_.y) * 2.0 / 3.0},
                 {end.x + (control.x - end.x) * 2.0 / 3.0, end.y + (control.y - end.y) * 2.0 / 3.0}, end);
    }
    void CubicTo(double control1X, double control1Y, double control2X, double control2Y, double x,
                 double y) override {
        AddCurve(map_({control1X, control1Y}), map_({control2X, control2Y}), map_({x, y}));
    }
    void Close() override {
        const auto end = static_cast<std::uint32_t>(glyph_.points.size());
        if (end - begin_ > 1) glyph_.contours.push_back({begin_, end - begin_});
        begin_ = end;
    }

private:
    void AddCurve(const ORVMathPoint2D& control1, const ORVMathPoint2D& control2, const ORVMathPoint2D& end) {
        const int pieces = ORVPiecesOfCubic(current_, control1, control2, end);
        int i = 0;
        ORVFlattenCubic(current_, control1, control2, end, pieces,
                        [&](const ORVMathPoint2D& p) { Add(p, ++i < pieces); });
        current_ = end;
    }
    void Add(const ORVMathPoint2D& p, bool isSmooth) {
        glyph_.points.push_back({static_cast<float>(p.x), static_cast<float>(p.y)});
        glyph_.smooth.push_back(isSmooth ? 1 : 0);
    }

    RasterGlyph& glyph_;
    const ORVMathAffine2D map_;
    ORVMathPoint2D current_, start_;
    std::uint32_t begin_ = 0;
};

void MeasureGlyph(RasterGlyph& glyph) {
    double area = 0.0;
    for (const RasterGlyph::Contour& contour : glyph.contours)
        for (std::uint32_t i = 0; i < contour.count; ++i) {
            const RasterPoint& a = glyph.points[contour.first + i];
            const RasterPoint& b = glyph.points[contour.first + (i + 1) % contour.count];
            area += static_cast<double>(a.x) * static_cast<double>(b.y) -
                    static_cast<double>(b.x) * static_cast<double>(a.y);
        }
    glyph.clockwise = area > 0.0;
    glyph.left = glyph.top = std::numeric_limits<float>::max();
    glyph.right = glyph.bottom = std::numeric_limits<float>::lowest();
    for (const RasterPoint& p : glyph.points) {
        glyph.left = std::min(glyph.left, p.x);
        glyph.right = std::max(glyph.right, p.x);
        glyph.top = std::min(glyph.top, p.y);
        glyph.bottom = std::max(glyph.bottom, p.y);
    }
}

}  // namespace

std::size_t GlyphStore::MapHash::operator()(const Map& map) const {
    std::size_t hash = std::hash<const ORVFontFace*>()(map.face);
    for (const double value : {map.m11, map.m12, map.m21, map.m22})
        hash = hash * 1'000'003U ^ std::hash<double>()(value);
    return hash;
}

const RasterGlyph* GlyphStore::Find(const Map& map, std::uint32_t index) {
    const auto [entry, isNewMap] = maps_.try_emplace(map, static_cast<std::uint32_t>(maps_.size()));
    if (isNewMap) keptFaces_.Keep(*map.face);
    const std::uint64_t key = std::uint64_t{entry->second} << 32U | index;
    const auto [found, isNew] = index_.try_emplace(key, nullptr);
    if (!isNew) return found->second;
    RasterGlyph& glyph = glyphs_.emplace_back();
    GlyphFlattening flattening(glyph, {map.m11, map.m12, map.m21, map.m22, 0.0, 0.0});
    map.face->DrawGlyph(index, 1.0, flattening);
    flattening.Close();
    MeasureGlyph(glyph);
    return found->second = &glyph;
}

void GlyphStore::Clear() {
    glyphs_.clear();
    maps_.clear();
    index_.clear();
    keptFaces_.Clear();
}
