// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtModel;
class ORVUnicodeString;

/// Properties of a page that come from its document.
struct SvgPageSource {
    const ORVUnicodeString& currentPath;  ///< path of the document's file; empty if unknown
    unsigned char yFlip = 1;
    unsigned char embeddedFragment = 0;
};

/// Determines the size of a page from "width", "height" and "viewBox", and sets it in the state and the page.
template <SvgElementAccess Element>
void SizePage(SvgDrawState& state, const Element& element);

/// Builds one page of the model from an "svg" element. The size comes from "width", "height" and "viewBox",
/// or from the bounding box of the content if there is none of these. The element's x and y do not move the
/// page.
/// @return the result of the last child; 0 if there are no children
template <SvgElementAccess Element>
int BuildPage(const SvgPageSource& source, const Element& element, ORVPrtModel& model);
