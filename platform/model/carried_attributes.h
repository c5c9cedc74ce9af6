// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <utility>

#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTransformAttributes.h"

// What primitives carry, one base each, so that a walk can treat every class that has a set alike.

/// Has an outline.
struct ORVPrtStroked {
    /// How the outline is drawn.
    void SetStrokeAttributes(ORVPrtStrokeAttributes stroke) { stroke_ = std::move(stroke); }
    const ORVPrtStrokeAttributes& GetStrokeAttributes() const { return stroke_; }

private:
    ORVPrtStrokeAttributes stroke_;
};

/// Says which of inside and outline is drawn. A base of what is ORVPrtFilled; the first one behind the
/// primitive, whose last word has room for it.
struct ORVPrtDrawStyled {
    /// A value of orvprint::ORVPrtDrawStyle.
    void SetDrawStyle(int style) { drawStyle_ = static_cast<std::uint8_t>(style); }
    int GetDrawStyle() const { return drawStyle_; }

private:
    std::uint8_t drawStyle_ = orvprint::kDrawFill;
};

/// Has an inside and an outline; ORVPrtDrawStyled says which of them is drawn.
struct ORVPrtFilled : ORVPrtStroked {
    /// How the inside is drawn.
    void SetFillAttributes(ORVPrtFillAttributes fill) { fill_ = std::move(fill); }
    const ORVPrtFillAttributes& GetFillAttributes() const { return fill_; }

private:
    ORVPrtFillAttributes fill_;
};

/// Has a transform of its own.
struct ORVPrtTransformed {
    /// From the primitive's coordinates to those of its container.
    void SetTransformAttributes(ORVPrtTransformAttributes transform) { transform_ = std::move(transform); }
    const ORVPrtTransformAttributes& GetTransformAttributes() const { return transform_; }

private:
    ORVPrtTransformAttributes transform_;
};
