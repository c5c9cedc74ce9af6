// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interpreters/svg2/css/declarations.h"
#include "interpreters/svg2/css/font_faces.h"
#include "interpreters/svg2/css/selectors.h"
#include "interpreters/svg2/document/Document.h"

namespace svg2 {

/// What questions of media are answered by: the page that is printed, in px.
struct Medium {
    double width = 0.0, height = 0.0;
};

/// True when one query of a list holds for paper; the empty list holds.
bool MatchesMedia(std::string_view queries, const Medium& medium);

/// The style sheets of a document and their rules.
class StyleSheets {
public:
    /// A rule that selects an element.
    struct Match {
        std::uint32_t specificity;
        std::uint32_t rule;  ///< its place among all rules
    };

    /// Reads all "style" elements that are sheets of CSS for paper.
    StyleSheets(const Document& document, const Medium& medium);

    bool IsEmpty() const { return rules_.empty(); }
    /// True when a sheet asks for another one, which is not loaded.
    bool ImportsSheets() const { return importsSheets_; }

    /// Fonts that the sheets bring, in their order.
    std::span<const FontFaceRule> GetFontFaces() const { return fontFaces_; }

    /// Finds the rules for an element, those that win last.
    void FindMatches(SelectorMatcher& matcher, ElementIndex element, std::vector<Match>& matches) const;
    std::span<const Declaration> DeclarationsOf(const Match& match) const;

private:
    struct Block {
        std::size_t begin, end;  // of declarations
    };
    struct Rule {
        Selector selector;
        Block block;
    };

    void ReadSheet(std::string_view text, const Medium& medium, int depth);
    void ReadAtRule(Scanner& scanner, const Medium& medium, int depth);
    void ReadRule(std::string_view selectors, std::string_view block);
    void Index(std::uint32_t rule);
    void TryRules(SelectorMatcher& matcher, ElementIndex element, const std::vector<std::uint32_t>& rules,
                  std::vector<Match>& matches) const;

    using Rules = std::unordered_map<std::string_view, std::vector<std::uint32_t>>;

    const Document& document_;
    std::deque<std::string> texts_;  // that views refer to
    SelectorNamespaces namespaces_;
    std::vector<Declaration> declarations_;
    std::vector<Rule> rules_;
    // By what the element itself has to have; the first of identifier, class and type.
    Rules byId_, byClass_, byType_;
    std::vector<std::uint32_t> others_;
    std::vector<FontFaceRule> fontFaces_;
    ElementIndex sheet_ = Document::kRoot;  // that is read
    bool importsSheets_ = false;
};

}  // namespace svg2
