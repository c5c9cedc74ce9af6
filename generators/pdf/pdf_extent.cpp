// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_extent.h"

#include <algorithm>

void PdfExtent::Add(ORVMathBox2D box) {
    if (!clips_.empty()) box = box.Intersection(clips_.back());
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
    clips_.push_back(clips_.empty() ? box : clips_.back().Intersection(box));
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
    return whole.Intersection(area_);
}
