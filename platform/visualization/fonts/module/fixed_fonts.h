// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

/// A catalogue name that is always found, and its substitutes.
struct FixedFont {
    enum Look { kSerif, kSans, kMono, kItalicSerif, kBoldSans };
    std::string_view name;
    std::span<const char* const> families;  ///< same font, same metrics or similar look; best first
    Look lastResort;                        ///< used when none of `families` is installed
};

/// The row of a fixed name; null for any other name.
const FixedFont* FindFixedFont(std::string_view name);

/// Common families of a look, best first, and fontconfig's generic name for it.
std::span<const char* const> LastResortFamilies(FixedFont::Look look);
const char* GenericFamily(FixedFont::Look look);
