// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

/// A viewport of an "svg" or "symbol" within a drawing.
struct InnerViewport {
    Rectangle rectangle;      ///< in the user units around it
    ORVMathAffine2D toOuter;  ///< from the units within to those around
    Viewport sizes;           ///< that percentages within refer to
};

/// The viewport of a nested "svg", or of a "symbol" or "svg" that a "use" shows.
/// @param use       the element that shows it; kNoElement for none. Its sizes replace those of the target
/// @return nothing when it has no area, so that nothing of it shows
std::optional<InnerViewport> FindInnerViewport(const Scene& scene, ElementIndex element, const Style& style,
                                               const Viewport& outer, ElementIndex use,
                                               const Style* useStyle);

/// The viewport that the "viewBox" of the root makes of its page. @return nothing when that has no area
std::optional<InnerViewport> FindRootViewport(const Document& document, const Viewport& page);

/// Whether the conditions of an element hold: language and extensions. Features count as there.
bool PassesConditions(const Document& document, ElementIndex element);

/// The child that a "switch" shows; kNoElement for none.
ElementIndex ChooseOfSwitch(Scene& scene, ElementIndex element);
/// The same without a scene that keeps it: each call goes through the children.
ElementIndex FindOfSwitch(const Document& document, ElementIndex element);

/// What a "use" shows; kNoElement when that is nothing.
ElementIndex FindUseTarget(const Document& document, ElementIndex use);

/// Whether a target shows where it is used. Symbols do, whatever their own "display" says.
bool IsShownByUse(const Document& document, ElementIndex target, const Style& style);

}  // namespace svg2
