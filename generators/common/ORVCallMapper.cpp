#include "generators/common/ORVCallMapper.h"

#include <cmath>

namespace {

bool IsFinite(const ORVMathPoint2D& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

}  // namespace

bool ORVCallMapper::IsUsable(const ORVMathAffine2D& map) {
    const double determinant = map.Determinant();
    return map.IsFinite() && determinant != 0.0 && std::isfinite(determinant);
}

const ORVPrintFill* ORVCallMapper::MapFill(const ORVMathAffine2D& outer, const ORVPrintFill* fill) {
    if (!fill || !fill->pattern) return fill;
    fill_ = *fill;
    fill_.patternToPage = outer * fill->patternToPage;
    return IsUsable(fill_.patternToPage) ? &fill_ : nullptr;
}

std::optional<ORVPrintShape> ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintShape& shape) {
    const ORVMathAffine2D toPage = outer * shape.toPage;
    const ORVPrintFill* fill = MapFill(outer, shape.fill);
    if (!IsUsable(toPage) || (!fill && !shape.stroke)) return std::nullopt;
    return ORVPrintShape{shape.path, toPage, fill, shape.stroke, shape.id};
}

std::optional<ORVPrintText> ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintText& text) {
    const ORVMathAffine2D toPage = outer * text.toPage;
    const ORVPrintFill* fill = MapFill(outer, text.fill);
    if (!IsUsable(toPage) || (!fill && !text.stroke)) return std::nullopt;
    const ORVPrintPath* clip = nullptr;
    if (text.clip) {
        clip_ = *text.clip;
        clip = &clip_;
        for (ORVMathPoint2D& p : clip_.points) {
            p = outer(p);
            if (!IsFinite(p)) clip = nullptr;  // so far out that it cuts nothing off
        }
    }
    return ORVPrintText{text.layout, text.text, toPage, fill, text.stroke, clip, text.id};
}

std::optional<ORVPrintImage> ORVCallMapper::Map(const ORVMathAffine2D& outer, const ORVPrintImage& image) {
    const ORVMathAffine2D toPage = outer * image.toPage;
    if (!IsUsable(toPage)) return std::nullopt;
    return ORVPrintImage{image.image, toPage, image.id};
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
