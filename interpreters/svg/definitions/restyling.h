// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTextAttributes.h"

class ORVPrtGraphicPrimitiveElt;
class ORVPrtPrimitiveBudget;
struct SvgDrawState;

/// Applies the stroke, fill and text sets of a state to trees of primitives; each primitive takes those its
/// class has. Draw styles, transforms and identifiers are unchanged.
class SvgRestyling {
public:
    /// @param budget  of the model, which limits the primitives visited; may be null
    explicit SvgRestyling(ORVPrtPrimitiveBudget* budget = nullptr) : budget_(budget) {}
    ORVPrtPrimitiveBudget* GetBudget() const { return budget_; }

    /// Restyles a tree that nothing else refers to, such as a new duplicate.
    /// @return false if the limit is reached
    bool RestyleCopy(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive);

    /// Restyles a definition in place. While all definitions receive the same sets, primitives that already
    /// have them are not visited again, so the time for definitions with shared parts is proportional to
    /// their size.
    /// @return false if the limit is reached
    bool RestyleShared(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive);

private:
    bool Walk(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive, std::uint32_t mark);

    ORVPrtPrimitiveBudget* budget_;
    // The sets most recently applied to shared definitions, and the mark of the primitives that have them.
    std::uint32_t sharedMark_ = 0;
    ORVPrtStrokeAttributes sharedStroke_;
    ORVPrtFillAttributes sharedFill_;
    ORVPrtTextAttributes sharedText_;
};
