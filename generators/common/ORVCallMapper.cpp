// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVCallMapper.h"

#include <cmath>

namespace {

bool IsFinite(const ORVMathPoint2D& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

/// Maps a gradient into `storage` and points `gradient` at it, or sets it to null if nothing would show.
void MapGradient(const ORVMathAffine2D& outer, const ORVPrintGradient*& gradient, ORVPrintGradient& storage) {
    storage = *gradient;
    storage.toPage = outer * gradient->toPage;
    gradient = ORVCallMapper::IsUsable(storage.toPage) ? &storage : nullptr;
}

}  // namespace

bool ORVCallMapper::IsUsable(const ORVMathAffine2D& map) {
    const double determinant = map.Determinant();
    return map.IsFinite() && determinant != 0.0 && std::isfinite(determinant);
}

const ORVPrintFill* ORVCallMapper::MapFill(const ORVMathAffine2D& outer, const ORVPrintFill* fill) {
    if (!fill || (!fill->pattern && !fill->gradient)) return fill;
    fill_ = *fill;
    if (fill->gradient) {
        MapGradient(outer, fill_.gradient, fillGradient_);
        if (!fill_.gradient) return nullptr;
    }
    if (!fill->pattern) return &fill_;
    fill_.patternToPage = outer * fill->patternToPage;
    return IsUsable(fill_.patternToPage) ? &fill_ : nullptr;
}

const ORVPrintStroke* ORVCallMapper::MapStroke(const ORVMathAffine2D& outer, const ORVPrintStroke* stroke) {
    if (!stroke || !stroke->gradient) return stroke;
    stroke_ = *stroke;
    MapGradient(outer, stroke_.gradient, strokeGradient_);
    return stroke_.gradient ? &stroke_ : nullptr;
}

std::optional<ORVPrintShape> ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintShape& shape) {
    const ORVMathAffine2D toPage = outer * shape.toPage;
    const ORVPrintFill* fill = MapFill(outer, shape.fill);
    const ORVPrintStroke* stroke = MapStroke(outer, shape.stroke);
    if (!IsUsable(toPage) || (!fill && !stroke)) return std::nullopt;
    return ORVPrintShape{shape.path, toPage, fill, stroke, shape.id};
}

std::optional<ORVPrintText> ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintText& text) {
    const ORVMathAffine2D toPage = outer * text.toPage;
    const ORVPrintFill* fill = MapFill(outer, text.fill);
    const ORVPrintStroke* stroke = MapStroke(outer, text.stroke);
    if (!IsUsable(toPage) || (!fill && !stroke)) return std::nullopt;
    const ORVPrintPath* clip = nullptr;
    if (text.clip) {
        clip_ = *text.clip;
        clip = &clip_;
        for (ORVMathPoint2D& p : clip_.points) {
            p = outer(p);
            if (!IsFinite(p)) clip = nullptr;  // too far away to cut anything off
        }
    }
    return ORVPrintText{text.layout, text.text, toPage, fill, stroke, clip, text.id};
}

std::optional<ORVPrintImage> ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintImage& image) {
    const ORVMathAffine2D toPage = outer * image.toPage;
    if (!IsUsable(toPage)) return std::nullopt;
    return ORVPrintImage{image.image, toPage, image.id, image.isSmooth};
}

ORVMathBox2D ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVMathBox2D& box) {
    ORVMathBox2D mapped;
    if (box.IsEmpty()) return mapped;
    for (const ORVMathPoint2D& corner : {ORVMathPoint2D{box.xMin, box.yMin},
                                         {box.xMax, box.yMin},
                                         {box.xMin, box.yMax},
                                         {box.xMax, box.yMax}})
        mapped.Add(outer(corner));
    return mapped;
}

ORVPrintClipPath ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintClipPath& clip) {
    static const ORVPrintPath kNothing;
    const ORVMathAffine2D toPage = outer * clip.toPage;
    return IsUsable(toPage) ? ORVPrintClipPath{clip.path, toPage, clip.evenOdd}
                            : ORVPrintClipPath{kNothing, {}, false};
}

ORVPrintLayer ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintLayer& layer) {
    ORVPrintLayer mapped = layer;
    mapped.box = Map(outer, layer.box);
    return mapped;
}

ORVPrintMask ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintMask& mask) {
    ORVPrintMask mapped = mask;
    mapped.box = Map(outer, mask.box);
    return mapped;
}

ORVPrintFilter ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintFilter& filter) {
    ORVPrintFilter mapped = filter;
    mapped.toPage = outer * filter.toPage;
    return mapped;
}
