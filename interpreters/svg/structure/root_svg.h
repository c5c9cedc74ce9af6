// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtModel;
class ORVUnicodeString;

/// What a page takes over from the document it belongs to.
struct SvgPageSource {
    const ORVUnicodeString& currentPath;  ///< file of the document, empty when unknown
    unsigned char yFlip = 1;
    unsigned char embeddedFragment = 0;
};

/// Reads the size of a page from "width", "height" and "viewBox" into its state and the page itself.
template <SvgElementAccess Element>
void SizePage(SvgDrawState& state, const Element& element);

/// Builds one page of the model from an "svg" element: sizes it from "width", "height" and "viewBox", or by
/// the box of its content when it has none of them, and walks the children. The element's position never
/// moves the page.
/// @return the result for the last child, 0 when there are no children
template <SvgElementAccess Element>
int BuildPage(const SvgPageSource& source, const Element& element, ORVPrtModel& model);
