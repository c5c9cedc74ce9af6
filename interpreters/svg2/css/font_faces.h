// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "interpreters/svg2/document/Document.h"

namespace svg2 {

/// Where the font of a rule may come from.
struct FontSource {
    enum class Kind : std::uint8_t {
        kData,   ///< a data URI
        kLocal,  ///< the name of an installed font
        kOther,  ///< an address, which is not loaded
    };
    Kind kind = Kind::kOther;
    std::string_view text;  ///< the URI or the name, without quotes
};

/// A rule "@font-face": a font that the document brings. Views are of the sheet.
struct FontFaceRule {
    std::string family;  ///< in lower case
    std::string_view writtenFamily;
    std::vector<FontSource> sources;  ///< the first that can be used counts
    std::pair<double, double> weights{400.0, 400.0}, stretches{100.0, 100.0};  ///< least and greatest
    bool isItalic = false;
    std::vector<std::pair<char32_t, char32_t>> ranges;  ///< of code points; none for all
    ElementIndex sheet = Document::kRoot;  ///< the element that the rule stands in; the root for outer sheets
    std::string_view ignored;              ///< the last descriptor that is not read; empty for none
};

/// Reads the declarations of a rule. What cannot be read of them is as absent.
/// @return false when it is no rule, for want of a family or of sources
bool ReadFontFace(std::string_view block, FontFaceRule& rule);

/// The names of a list of families, in lower case, without quotes, each run of white space one space.
std::vector<std::string> SplitFamilies(std::string_view list);

}  // namespace svg2
