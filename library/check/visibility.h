// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/finding_writer.h"

struct SvgDrawState;

/// The "display" and "visibility" in force at the current element. The interpreter treats them as draw
/// styles, whereas in SVG they hide; this records what the author intends. A value that is copied as it is
/// inherited.
struct Visibility {
    bool isRemoved = false;   ///< by "display"
    bool isHidden = false;    ///< by "visibility"
    NumberedElement shownBy;  ///< element that specifies "visible"; its node is null if none does
    int drawStyle = 0;        ///< the draw style without `shownBy`

    /// Applies what an element specifies.
    /// @param inherited  state before the element's own presentation attributes
    void TakeIn(const NumberedElement& element, const SvgDrawState& inherited);

    /// The draw style that the author intends.
    /// @param painted  the one that the interpreter paints with
    int GetMeantStyle(int painted) const { return shownBy.node ? drawStyle : painted; }
};
