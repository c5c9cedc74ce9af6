// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

class ORVPrtGraphicPrimitiveElt;
class ORVPrtTransformAttributes;
struct SvgDrawState;

/// Appends a transform list such as "translate(1,2) rotate(45)" to a primitive's transform, as elementary
/// operations in document order. If the state flips y, they are enclosed in two reflections about the page
/// height, even if the text is empty. Invalid parts are skipped, and an invalid number is dropped from its
/// list.
/// @return kUnusable if `primitive` is null, else kDone. A primitive whose class has no transform is
///         unchanged
int ApplyTransformList(const SvgDrawState& state, std::string_view text,
                       ORVPrtGraphicPrimitiveElt* primitive);

/// Appends the reflection of y about the page height, which maps between the drawing's y (down) and the
/// model's (up).
void AddPageMirror(const SvgDrawState& state, ORVPrtTransformAttributes& transform);

/// The transform of a primitive; empty if its class has none.
ORVPrtTransformAttributes GetTransform(const ORVPrtGraphicPrimitiveElt& primitive);
void SetTransform(ORVPrtGraphicPrimitiveElt& primitive, const ORVPrtTransformAttributes& transform);
