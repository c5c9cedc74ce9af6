// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

struct SvgDrawState;
class ORVPrtImageElt;

/// Creates the colour table of a page if it has none, with black as index 0.
void EnsureColourTable(ORVPrtImageElt& page);

/// Converts a colour such as "#f00", "#ff0000", "rgb(255,0,0)", "rgb(100%,0%,0%)" or "red" to an index in the
/// page's colour table, registering it if it is new. Blanks are ignored. Components are truncated to eight
/// bits, on purpose: 256 becomes 0.
/// @return kRead with `index` set, or -1 for anything else ("none" and "currentColor" are not colours)
[[nodiscard]] int ParseColour(const SvgDrawState& state, std::string_view value, unsigned int& index);

/// Whether the page has so many colours that looking one up is likely to miss the cache.
bool HasManyColours(const SvgDrawState& state);
/// Prefetches the memory that ParseColour will access for a colour. Has no visible effect.
void PrefetchColour(const SvgDrawState& state, std::string_view value);
