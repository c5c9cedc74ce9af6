// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "library/check/value_checks.h"

class ORVFont;
struct SvgDrawState;
enum class PropertySource;

/// What a picture turned out to be.
struct PictureFacts {
    MaybeProblem problem;                      ///< why it cannot be read
    MaybeProblem remark;                       ///< what of it is not followed
    int width = 0, height = 0;                 ///< pixels; 0 when it cannot be read
    double tileWidth = 0.0, tileHeight = 0.0;  ///< user units that it takes in a pattern
};

/// Pictures and fonts that a drawing asks for, looked up as the interpreter does. Answers are kept.
class ResourceChecks {
public:
    /// @param state      gives the document's path
    /// @param reference  stays in place as long as this object
    const PictureFacts& CheckPicture(const SvgDrawState& state, std::string_view reference);

    /// Whether text can be set in the font of `state`; only the first that cannot is told, and then nothing
    /// is said of families and glyphs.
    MaybeProblem CheckFont(const SvgDrawState& state);

    /// A list of font families: whether the first one is found.
    MaybeProblem CheckFamilies(std::string_view families, PropertySource source);

    /// Text that names no family: which font is taken. Only the first such text is a finding.
    MaybeProblem CheckDefaultFont(const SvgDrawState& state);

    /// The first character of a text that no installed font has, and that no text before had.
    MaybeProblem CheckGlyphs(std::string_view text, const SvgDrawState& state);

private:
    std::unordered_map<std::string_view, PictureFacts> pictures_;
    std::vector<bool> knownCharacters_;                    // by code point
    std::set<std::pair<const ORVFont*, int>> knownFonts_;  // with weights
    bool isTextUnset_ = false, isDefaultFontTold_ = false;
};
