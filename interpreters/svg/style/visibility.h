// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// Attributes "display" and "visibility": they only rewrite the draw style, which later paint may change
/// again. So a hidden element with a fill of its own is filled: kept on purpose.
template <SvgElementAccess Element>
void ApplyDisplayVisibility(SvgDrawState& state, const Element& element);
