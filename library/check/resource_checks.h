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

/// The result of examining an image.
struct ImageFacts {
    MaybeProblem problem;                      ///< why it cannot be read
    MaybeProblem remark;                       ///< which of its features is not supported
    int width = 0, height = 0;                 ///< in pixels; 0 if it cannot be read
    double tileWidth = 0.0, tileHeight = 0.0;  ///< size as a pattern tile, in user units
};

/// Images and fonts used by a drawing, looked up as the interpreter does. Results are cached.
class ResourceChecks {
public:
    /// @param state      provides the document's path
    /// @param reference  must outlive this object
    const ImageFacts& CheckImage(const SvgDrawState& state, std::string_view reference);

    /// Whether text can be set in the font of `state`. Only the first failure is reported; after it, families
    /// and glyphs are not checked.
    MaybeProblem CheckFont(const SvgDrawState& state);

    /// Whether the first family of a list is available.
    MaybeProblem CheckFamilies(std::string_view families, PropertySource source);

    /// The font used for text that names no family. Only the first such text is reported.
    MaybeProblem CheckDefaultFont(const SvgDrawState& state);

    /// The first character of a text that no installed font has and that was not reported before.
    MaybeProblem CheckGlyphs(std::string_view text, const SvgDrawState& state);

private:
    std::unordered_map<std::string_view, ImageFacts> images_;
    std::vector<bool> knownCharacters_;                    // indexed by code point
    std::set<std::pair<const ORVFont*, int>> knownFonts_;  // with their weights
    bool isTextUnset_ = false, isDefaultFontTold_ = false;
};
