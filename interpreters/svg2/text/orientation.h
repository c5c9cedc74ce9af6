// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace svg2 {

/// True if a character is upright in vertical lines (Unicode UAX 50); others are set sideways.
bool IsUpright(char32_t c);
/// True if an upright character needs a vertical form; without one it is set sideways.
bool NeedsVerticalForm(char32_t c);

}  // namespace svg2
