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
#include "interpreters/svg2/css/layers.h"
#include "interpreters/svg2/css/selectors.h"
#include "interpreters/svg2/document/Document.h"

namespace svg2 {

/// What questions of media are answered by: the page that is printed, in px.
struct Medium {
    double width = 0.0, height = 0.0;
};

/// True when one query of a list holds for paper; the empty list holds.
bool MatchesMedia(std::string_view queries, const Medium& medium);

/// A rule of a sheet that has no effect here.
struct UnreadRule {
    enum class Kind : std::uint8_t {
        kAtRule,
        kAnimation,
        kSelectors,  ///< that cannot be read
        kTooMany,    ///< rules within rules, or too deep in each other
    };
    Kind kind = Kind::kAtRule;
    ElementIndex sheet = Document::kRoot;  ///< the root for outer sheets
    std::string_view text;                 ///< what stands before its block
};

/// The style sheets of a document and their rules.
class StyleSheets {
public:
    /// A rule that selects an element.
    struct Match {
        std::uint32_t specificity;
        std::uint32_t rule;  ///< its place among all rules
        std::uint32_t rank;  ///< of its layer, greater ones win
    };

    /// Reads all "style" elements that are sheets of CSS for paper.
    StyleSheets(const Document& document, const Medium& medium);

    bool IsEmpty() const { return rules_.empty(); }
    /// True when a sheet asks for another one, which is not loaded.
    bool ImportsSheets() const { return importsSheets_; }

    /// Rules that nothing came of, in their order, up to some number of them.
    std::span<const UnreadRule> GetUnreadRules() const { return unreadRules_; }

    /// Fonts that the sheets bring, in their order.
    std::span<const FontFaceRule> GetFontFaces() const { return fontFaces_; }

    /// Finds the rules for an element, those that win last.
    void FindMatches(SelectorMatcher& matcher, ElementIndex element, std::vector<Match>& matches) const;
    /// Brings rules into the order in which their important declarations win: that of layers is the other way
    /// round.
    void OrderByImportance(std::vector<Match>& matches) const;
    std::span<const Declaration> DeclarationsOf(const Match& match) const;

private:
    struct Block {
        std::size_t begin, end;  // of declarations
    };
    struct Rule {
        Selector selector;
        Block block;
        SheetLayers::Layer layer;  ///< its rank, once all is read
    };
    /// What stands around rules.
    struct Surroundings {
        const Medium& medium;
        int depth = 0;
        SheetLayers::Layer layer = SheetLayers::kNone;
        SelectorList parents;  ///< of the rule around; null for none
        std::uint32_t parentSpecificity = 0;
    };

    void ReadWholeSheet(std::string_view text, const Medium& medium);
    void ReadSheet(std::string_view text, const Surroundings& around);
    void ReadAtRule(Scanner& scanner, const Surroundings& around);
    void ReadGroup(std::string_view block, const Surroundings& around);
    void ReadLayers(std::string_view names, const Surroundings& around);
    void ReadNamespace(std::string_view prelude);
    void ReadRule(std::string_view selectors, std::string_view block, const Surroundings& around);
    void ReadNestingBlock(std::string_view block, const Surroundings& around);
    void ReadDeclarations(std::string_view text);
    void AddRule(Selector selector, std::size_t firstDeclaration, SheetLayers::Layer layer);
    void AddRulesOfParents(std::size_t firstDeclaration, const Surroundings& around);
    void NoteUnread(UnreadRule::Kind kind, std::string_view text);
    SelectorContext ContextOf(const Surroundings& around) {
        return {namespaces_, texts_, around.parents, around.parentSpecificity};
    }
    void RankRules();
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
    std::vector<UnreadRule> unreadRules_;
    SheetLayers layers_;
    std::size_t rulesOfParents_ = 0;
    ElementIndex sheet_ = Document::kRoot;  // that is read
    bool hasLayers_ = false;
    bool importsSheets_ = false;
};

}  // namespace svg2
