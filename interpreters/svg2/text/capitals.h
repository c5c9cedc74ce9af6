// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace svg2 {

/// The capital of a small letter of the Latin, Greek or Cyrillic script; any other character itself.
char32_t CapitalOf(char32_t c);

}  // namespace svg2
