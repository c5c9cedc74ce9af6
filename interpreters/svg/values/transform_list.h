// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

class ORVPrtGraphicPrimitiveElt;
class ORVPrtTransformAttributes;
struct SvgDrawState;

/// Appends a transform list such as "translate(1,2) rotate(45)" to a primitive's transform, as elementary
/// operations in document order. Where the state flips y, they stand between two mirrorings against the page
/// height, also when the text is empty.
/// @return kUnusable when `primitive` is null, else kDone. A primitive whose class carries no transform stays
///         as it is. What cannot be read is skipped; a token that is no number drops out of its list.
int ApplyTransformList(const SvgDrawState& state, std::string_view text,
                       ORVPrtGraphicPrimitiveElt* primitive);

/// Mirrors y against the page height: the map between the drawing's y (down) and the model's (up).
void AddPageMirror(const SvgDrawState& state, ORVPrtTransformAttributes& transform);

/// The transform of a primitive, empty for a class that carries none.
ORVPrtTransformAttributes GetTransform(const ORVPrtGraphicPrimitiveElt& primitive);
void SetTransform(ORVPrtGraphicPrimitiveElt& primitive, const ORVPrtTransformAttributes& transform);
