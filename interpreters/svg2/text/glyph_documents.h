// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace svg2 {

/// The document that draws a glyph, from the table "SVG " of a font: SVG, or SVG compressed with gzip.
/// @return a part of `table`; empty if there is none
std::string_view FindGlyphDocument(std::string_view table, std::uint32_t glyph);

}  // namespace svg2
