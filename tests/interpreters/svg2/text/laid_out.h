// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

namespace svg2_test {

/// Glyphs of a text in DejaVu Sans at 10 px, in drawing order.
std::vector<unsigned> GlyphsOf(const std::string& text);
/// Total length of the text's segments.
double LengthOf(const std::string& text);
/// Whether all of the text's segments are evenly spaced layouts.
bool IsEvenlySpaced(const std::string& text);

}  // namespace svg2_test
