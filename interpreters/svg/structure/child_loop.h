// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"
#include "interpreters/svg/structure/references.h"
#include "interpreters/svg/style/paint.h"

/// Calls `visit` for every child of an element, in document order. In large documents, where each colour and
/// each definition would be waited for, those of the next children are fetched meanwhile.
template <SvgElementAccess Element, class Visit>
void ForEachChild(const SvgDrawState& state, const Element& element, Visit visit) {
    for (Element child = element.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
        PrefetchPaint(state, child.NextSibling());
        PrefetchReference(state, child);
        visit(child);
    }
}
