// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/pen_store.h"

#include <algorithm>
#include <cstddef>

namespace {

// Number of recent pens that are compared.
constexpr std::size_t kPensToCompare = 8;

bool IsSameLinearMap(const ORVMathAffine2D& a, const ORVMathAffine2D& b) {
    return a.m11 == b.m11 && a.m12 == b.m12 && a.m21 == b.m21 && a.m22 == b.m22;
}

}  // namespace

const StrokePen* PenStore::Find(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice,
                                double thinnest) {
    const ORVMathAffine2D linear{toDevice.m11, toDevice.m12, toDevice.m21, toDevice.m22, 0.0, 0.0};
    const auto same = [&](const KeptPen& kept) {
        return kept.stroke.width == stroke.width && kept.stroke.cap == stroke.cap &&
               kept.stroke.join == stroke.join && kept.stroke.miterLimit == stroke.miterLimit &&
               kept.stroke.dashOffset == stroke.dashOffset && kept.stroke.isCrisp == stroke.isCrisp &&
               kept.stroke.isExact == stroke.isExact && IsSameLinearMap(kept.map, linear) &&
               std::equal(kept.dashes.begin(), kept.dashes.end(), stroke.dashes.begin(), stroke.dashes.end());
    };
    const auto end = pens_.size() > kPensToCompare ? pens_.rbegin() + kPensToCompare : pens_.rend();
    if (const auto found = std::find_if(pens_.rbegin(), end, same); found != end) return &found->pen;
    KeptPen& kept = pens_.emplace_back();
    kept.stroke = stroke;
    kept.dashes.assign(stroke.dashes.begin(), stroke.dashes.end());
    kept.stroke.dashes = kept.dashes;
    kept.stroke.gradient = nullptr;
    kept.map = linear;
    kept.pen = ORVMakePen(stroke, linear, thinnest, kept.dashEnds);
    return &kept.pen;
}
