// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"
#include "interpreters/svg/structure/references.h"
#include "interpreters/svg/style/paint.h"

/// Calls `visit` for every child of an element, in document order. In large documents, it prefetches the
/// colours and definitions of upcoming children. If the document is read only once, children are released
/// after their visit.
template <SvgElementAccess Element, class Visit>
void ForEachChild(const SvgDrawState& state, const Element& element, Visit visit) {
    ORVXmlChildWalk walk(element.Node());
    for (Element child = element.FirstChild(); !child.IsNull(); child = child.NextSibling()) {
        walk.Reach(child.Node());
        PrefetchPaint(state, child.NextSibling());
        PrefetchReference(state, child);
        visit(child);
    }
}
