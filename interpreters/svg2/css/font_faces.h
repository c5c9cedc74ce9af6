// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "interpreters/svg2/document/Document.h"

namespace svg2 {

/// A source of a @font-face rule.
struct FontSource {
    enum class Kind : std::uint8_t {
        kData,   ///< a data URI
        kLocal,  ///< the name of an installed font
        kOther,  ///< an address, which is not loaded
    };
    Kind kind = Kind::kOther;
    std::string_view text;  ///< the URI or name, without quotes
};

/// A @font-face rule. Its string views refer to the sheet.
struct FontFaceRule {
    std::string family;  ///< in lower case
    std::string_view writtenFamily;
    std::vector<FontSource> sources;  ///< the first usable one counts
    std::pair<double, double> weights{400.0, 400.0}, stretches{100.0, 100.0};  ///< minimum and maximum
    bool isItalic = false;
    std::vector<std::pair<char32_t, char32_t>> ranges;  ///< ranges of code points; empty: all
    /// the element that contains the rule; the root element for external sheets
    ElementIndex sheet = Document::kRoot;
    std::string_view ignored;  ///< the last descriptor that is not supported; empty: none
};

/// Reads the declarations of a rule. Invalid ones are ignored.
/// @return false if the rule has no family or no source
bool ReadFontFace(std::string_view block, FontFaceRule& rule);

/// The families of a list, in lower case, without quotes, with white space collapsed.
std::vector<std::string> SplitFamilies(std::string_view list);

}  // namespace svg2
