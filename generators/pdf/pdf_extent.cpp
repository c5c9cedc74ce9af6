// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_extent.h"

#include <algorithm>

namespace {

/// What both boxes cover; empty when they do not touch.
ORVMathBox2D Intersection(const ORVMathBox2D& a, const ORVMathBox2D& b) {
    const ORVMathBox2D common{std::max(a.xMin, b.xMin), std::min(a.xMax, b.xMax), std::max(a.yMin, b.yMin),
                              std::min(a.yMax, b.yMax)};
    return common.xMin <= common.xMax && common.yMin <= common.yMax ? common : ORVMathBox2D();
}

}  // namespace

void PdfExtent::Add(ORVMathBox2D box) {
    if (!clips_.empty()) box = Intersection(box, clips_.back());
    if (box.IsEmpty()) return;
    (isForm_ ? wholeBox_ : boxes_.back()).Unite(box);
}

void PdfExtent::AddPath(const ORVPrintPath& path, const ORVMathAffine2D& map, double margin) {
    ORVMathBox2D box;
    for (const ORVMathPoint2D& p : path.points) box.Add(map(p));
    if (box.IsEmpty()) return;
    Add({box.xMin - margin, box.xMax + margin, box.yMin - margin, box.yMax + margin});
}

void PdfExtent::AddBox(const ORVMathBox2D& box, const ORVMathAffine2D& map) {
    if (IsMeasured()) Add(box.MappedBy(map));
}

void PdfExtent::AddPaintMargin(double margin) { paintMargin_ = std::max(paintMargin_, margin); }

void PdfExtent::BeginClip(const ORVMathBox2D& box) {
    clips_.push_back(clips_.empty() ? box : Intersection(clips_.back(), box));
}

bool PdfExtent::EndClip() {
    if (clips_.empty()) return false;
    clips_.pop_back();
    return true;
}

ORVMathBox2D PdfExtent::EndBox() {
    const ORVMathBox2D whole = boxes_.back();
    boxes_.pop_back();
    if (!boxes_.empty()) boxes_.back().Unite(whole);
    return Intersection(whole, area_);
}
