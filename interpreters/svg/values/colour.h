// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

struct SvgDrawState;
class ORVPrtImageElt;

/// Gives a page its colour table, if it has none: black first, so that index 0 is black.
void EnsureColourTable(ORVPrtImageElt& page);

/// Turns a colour such as "#f00", "#ff0000", "rgb(255,0,0)", "rgb(100%,0%,0%)" or "red" into an index of
/// the page's colour table, where it is registered when it is new. Blanks count nowhere. Components are cut
/// to their low eight bits, on purpose: 256 is 0.
/// @return kRead with `index` written, -1 for anything else ("none" and "currentColor" are no colours)
[[nodiscard]] int ParseColour(const SvgDrawState& state, std::string_view value, unsigned int& index);

/// Whether the page has so many colours that looking for one waits for memory.
bool HasManyColours(const SvgDrawState& state);
/// Has the memory fetched where ParseColour will soon look for a colour of that page. Changes nothing.
void PrefetchColour(const SvgDrawState& state, std::string_view value);
