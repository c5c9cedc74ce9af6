// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace svg2 {

/// Whether a character stands upright in vertical lines (Unicode's UAX 50); others lie on their side.
bool IsUpright(char32_t c);
/// Whether an upright character needs a form for vertical lines: without one it lies on its side.
bool NeedsVerticalForm(char32_t c);

}  // namespace svg2
