// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace svg2 {

/// The capital letter for a small letter of the Latin, Greek or Cyrillic script; other characters are
/// returned unchanged.
char32_t CapitalOf(char32_t c);

}  // namespace svg2
