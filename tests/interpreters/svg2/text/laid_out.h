// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace svg2_test {

/// Glyphs of a text in DejaVu Sans at 10 px, in the order in which they are drawn.
std::vector<unsigned> GlyphsOf(const std::string& text);
/// Lengths of its parts, summed up.
double LengthOf(const std::string& text);

}  // namespace svg2_test
