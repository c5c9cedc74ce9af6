// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// Applies the attributes "display" and "visibility". They only change the draw style, which paint applied
/// later can override, so a hidden element with its own fill is filled: kept on purpose.
template <SvgElementAccess Element>
void ApplyDisplayVisibility(SvgDrawState& state, const Element& element);
