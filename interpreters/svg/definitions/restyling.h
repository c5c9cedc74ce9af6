// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTextAttributes.h"

class ORVPrtGraphicPrimitiveElt;
class ORVPrtPrimitiveBudget;
struct SvgDrawState;

/// Gives trees of primitives the stroke, fill and text sets of a state, each primitive those that its class
/// has. Draw styles, transforms and identifiers stay.
class SvgRestyling {
public:
    /// @param budget  of the model, which bounds the visits; may be null
    explicit SvgRestyling(ORVPrtPrimitiveBudget* budget = nullptr) : budget_(budget) {}
    ORVPrtPrimitiveBudget* GetBudget() const { return budget_; }

    /// Restyles a tree that nothing else refers to: a fresh duplicate.
    /// @return false when the limit is reached
    bool RestyleCopy(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive);

    /// Restyles a definition itself. As long as all of them get the same sets, what has them already is not
    /// visited again, so that definitions that share parts take time in proportion to their size.
    /// @return false when the limit is reached
    bool RestyleShared(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive);

private:
    bool Walk(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive, std::uint32_t mark);

    ORVPrtPrimitiveBudget* budget_;
    // The sets that shared definitions got last, and the mark of the primitives that have them.
    std::uint32_t sharedMark_ = 0;
    ORVPrtStrokeAttributes sharedStroke_;
    ORVPrtFillAttributes sharedFill_;
    ORVPrtTextAttributes sharedText_;
};
