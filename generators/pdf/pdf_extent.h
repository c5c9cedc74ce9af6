// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintPath.h"

/// Measures the extent of content: the bounding box of a form, and the boxes of groups on a page that links
/// and their targets need. Clipped content counts as far as it is visible. On a page, nothing is measured
/// while no box is open.
class PdfExtent {
public:
    /// For a page. @param area  of the page; boxes of groups are clipped to it
    explicit PdfExtent(const ORVMathBox2D& area) : isForm_(false), area_(area) {}
    /// For a form.
    PdfExtent() : isForm_(true) {}

    /// False if measuring can be skipped.
    bool IsMeasured() const { return isForm_ || !boxes_.empty(); }

    /// Adds the points of a transformed path. @param margin  added on all sides: half of the line width
    void AddPath(const ORVPrintPath& path, const ORVMathAffine2D& map, double margin);
    /// Adds a transformed box. Does nothing if nothing is measured.
    void AddBox(const ORVMathBox2D& box, const ORVMathAffine2D& map);
    /// Records how far paint may extend beyond the box, at corners of lines and around text.
    void AddPaintMargin(double margin);

    void BeginClip(const ORVMathBox2D& box);
    /// @return false if no clip is open
    bool EndClip();

    /// Bounding box of everything drawn between the two calls, which nest.
    void BeginBox() { boxes_.emplace_back(); }
    ORVMathBox2D EndBox();
    /// Exchanges the list of open boxes. With an empty list, content counts for none of them.
    void SwapBoxes(std::vector<ORVMathBox2D>& boxes) { boxes_.swap(boxes); }

    /// For a form: its bounding box without the margin, and the margin.
    const ORVMathBox2D& GetWholeBox() const { return wholeBox_; }
    double GetPaintMargin() const { return paintMargin_; }

private:
    void Add(ORVMathBox2D box);

    bool isForm_;
    ORVMathBox2D area_, wholeBox_;
    double paintMargin_ = 0.0;
    std::vector<ORVMathBox2D> boxes_, clips_;
};
