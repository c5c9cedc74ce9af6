// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <utility>

#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTransformAttributes.h"

// Base classes that hold attributes, one for each set, so that code can handle every class with a given set
// alike.

/// A primitive with an outline.
struct ORVPrtStroked {
    /// Stroke attributes.
    void SetStrokeAttributes(ORVPrtStrokeAttributes stroke) { stroke_ = std::move(stroke); }
    const ORVPrtStrokeAttributes& GetStrokeAttributes() const { return stroke_; }

private:
    ORVPrtStrokeAttributes stroke_;
};

/// A primitive with a draw style. Comes with ORVPrtFilled. Should be the first base after the primitive
/// class, whose padding it fits into.
struct ORVPrtDrawStyled {
    /// A value of orvprint::ORVPrtDrawStyle.
    void SetDrawStyle(int style) { drawStyle_ = static_cast<std::uint8_t>(style); }
    int GetDrawStyle() const { return drawStyle_; }

private:
    std::uint8_t drawStyle_ = orvprint::kDrawFill;
};

/// A primitive with a fill and an outline; ORVPrtDrawStyled determines which are drawn.
struct ORVPrtFilled : ORVPrtStroked {
    /// Fill attributes.
    void SetFillAttributes(ORVPrtFillAttributes fill) { fill_ = std::move(fill); }
    const ORVPrtFillAttributes& GetFillAttributes() const { return fill_; }

private:
    ORVPrtFillAttributes fill_;
};

/// A primitive with a transformation.
struct ORVPrtTransformed {
    /// The transformation from the primitive's coordinates to those of its container.
    void SetTransformAttributes(ORVPrtTransformAttributes transform) { transform_ = std::move(transform); }
    const ORVPrtTransformAttributes& GetTransformAttributes() const { return transform_; }

private:
    ORVPrtTransformAttributes transform_;
};
