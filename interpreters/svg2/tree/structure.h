// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

/// The viewport of an "svg" or "symbol" inside a drawing.
struct InnerViewport {
    Rectangle rectangle;      ///< in the surrounding user units
    ORVMathAffine2D toOuter;  ///< from inner to surrounding user units
    Viewport sizes;           ///< reference of percentages inside
};

/// The viewport of a nested "svg", or of a "symbol" or "svg" shown by a "use".
/// @param use       the element that shows it; kNoElement for none. Its sizes override those of the target
/// @return empty if it has no area, so nothing is visible
std::optional<InnerViewport> FindInnerViewport(const Scene& scene, ElementIndex element, const Style& style,
                                               const Viewport& outer, ElementIndex use,
                                               const Style* useStyle);

/// The viewport that the root's "viewBox" defines for its page.
/// @return empty if it has no area
std::optional<InnerViewport> FindRootViewport(const Document& document, const Viewport& page);

/// Whether the conditional attributes of an element (language and extensions) are satisfied. Required
/// features always are.
bool PassesConditions(const Document& document, ElementIndex element);

/// The child that a "switch" shows; kNoElement for none.
ElementIndex ChooseOfSwitch(Scene& scene, ElementIndex element);

/// The element that a "use" shows; kNoElement if there is none.
ElementIndex FindUseTarget(const Document& document, ElementIndex use);

/// Whether a target is displayed by "use". Symbols are, whatever their own "display".
bool IsShownByUse(const Document& document, ElementIndex target, const Style& style);

}  // namespace svg2
