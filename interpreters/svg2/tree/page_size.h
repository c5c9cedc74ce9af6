// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

#include "interpreters/svg2/document/Document.h"
#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

/// The size of a drawing in px: of its root, by the rules for drawings that stand alone.
/// @param contentBox  the box of what is drawn, in px; asked for when the root states neither size nor view
///                    box
/// @return a size of which one or both may be 0: the drawing has no page then
Viewport FindPageSize(const Document& document, const std::function<ORVMathBox2D()>& contentBox);

/// The same for a drawing that is an image: where its root states nothing, 300 by 150 px.
Viewport FindImageSize(const Document& document);

}  // namespace svg2
