// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>

#include "interpreters/svg2/document/Document.h"
#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

/// The size in px of a standalone drawing, determined by its root.
/// @param contentBox  returns the bounding box of the content in px; called if the root has neither a size
///         nor a viewBox
/// @return if either size is 0, the drawing has no page
Viewport FindPageSize(const Document& document, const std::function<ORVMathBox2D()>& contentBox);

/// The size of a drawing used as an image: 300 by 150 px by default.
Viewport FindImageSize(const Document& document);

}  // namespace svg2
