#pragma once

#include <utility>

#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTransformAttributes.h"

/// What primitives carry, one base each, so that a walk can treat every class that has a set alike.

struct ORVPrtStroked {
    void SetStrokeAttributes(ORVPrtStrokeAttributes stroke) { stroke_ = std::move(stroke); }
    const ORVPrtStrokeAttributes& GetStrokeAttributes() const { return stroke_; }

private:
    ORVPrtStrokeAttributes stroke_;
};

/// Inside and outline; the draw style says which of them is drawn.
struct ORVPrtFilled : ORVPrtStroked {
    void SetDrawStyle(int style) { drawStyle_ = style; }
    int GetDrawStyle() const { return drawStyle_; }
    void SetFillAttributes(ORVPrtFillAttributes fill) { fill_ = std::move(fill); }
    const ORVPrtFillAttributes& GetFillAttributes() const { return fill_; }

private:
    ORVPrtFillAttributes fill_;
    int drawStyle_ = kDrawFill;
};

struct ORVPrtTransformed {
    void SetTransformAttributes(ORVPrtTransformAttributes transform) { transform_ = std::move(transform); }
    const ORVPrtTransformAttributes& GetTransformAttributes() const { return transform_; }

private:
    ORVPrtTransformAttributes transform_;
};
