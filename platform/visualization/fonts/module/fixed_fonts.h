// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

/// A catalogue name that is always found, and what may stand in for it.
struct FixedFont {
    enum Look { kSerif, kSans, kMono, kItalicSerif, kBoldSans };
    std::string_view name;
    std::span<const char* const> families;  ///< same font, same metrics or nearest look, the best first
    Look lastResort;                        ///< when none of them is installed
};

/// The row of a fixed name, null for any other name.
const FixedFont* FindFixedFont(std::string_view name);

/// Wide-spread families of a look, the best first, and fontconfig's name for it.
std::span<const char* const> LastResortFamilies(FixedFont::Look look);
const char* GenericFamily(FixedFont::Look look);
