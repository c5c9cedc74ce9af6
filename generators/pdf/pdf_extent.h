// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintPath.h"

/// How far what is drawn reaches: the box of all that a form shows, and the boxes of groups of a page that
/// links and their targets need. What is drawn within a clip counts as far as the clip lets it show. On a
/// page nothing is measured while no box is open.
class PdfExtent {
public:
    /// Of a page. @param area  of the page; boxes of groups end there
    explicit PdfExtent(const ORVMathBox2D& area) : isForm_(false), area_(area) {}
    /// Of a form.
    PdfExtent() : isForm_(true) {}

    /// False while nobody asks how far things reach, so that measuring them may be left out.
    bool IsMeasured() const { return isForm_ || !boxes_.empty(); }

    /// Adds a path's points under a map. @param margin  added on all sides: half of a line's width
    void AddPath(const ORVPrintPath& path, const ORVMathAffine2D& map, double margin);
    /// Adds a box under a map. Does nothing while nothing is measured.
    void AddBox(const ORVMathBox2D& box, const ORVMathAffine2D& map);
    /// Says that paint may reach beyond the box: at corners of lines, and around text.
    void AddPaintMargin(double margin);

    void BeginClip(const ORVMathBox2D& box);
    /// @return false when no clip is open
    bool EndClip();

    /// The box of all that is drawn between the two calls, which nest.
    void BeginBox() { boxes_.emplace_back(); }
    ORVMathBox2D EndBox();
    /// Exchanges the open boxes, so that what is drawn with an empty list counts for none of them.
    void SwapBoxes(std::vector<ORVMathBox2D>& boxes) { boxes_.swap(boxes); }

    /// Of a form: what it covers without the margin, and the margin.
    const ORVMathBox2D& GetWholeBox() const { return wholeBox_; }
    double GetPaintMargin() const { return paintMargin_; }

private:
    void Add(ORVMathBox2D box);

    bool isForm_;
    ORVMathBox2D area_, wholeBox_;
    double paintMargin_ = 0.0;
    std::vector<ORVMathBox2D> boxes_, clips_;
};
