// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/finding_writer.h"

struct SvgDrawState;

/// What "display" and "visibility" have said where the walk stands. To the interpreter they are draw styles,
/// to SVG they hide: this keeps what an author goes by. A value, handed down as the drawing state is.
struct Visibility {
    bool isRemoved = false;   ///< by "display"
    bool isHidden = false;    ///< by "visibility"
    NumberedElement shownBy;  ///< the element that says "visible"; without a node when none does
    int drawStyle = 0;        ///< the one there would be without `shownBy`

    /// Takes in what an element says.
    /// @param inherited  state before the element's own presentation
    void TakeIn(const NumberedElement& element, const SvgDrawState& inherited);

    /// The draw style that the author has asked for.
    /// @param painted  the one that the interpreter paints with
    int GetMeantStyle(int painted) const { return shownBy.node ? drawStyle : painted; }
};
