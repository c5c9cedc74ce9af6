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

/// The medium that media queries are evaluated for: the printed page, in px.
struct Medium {
    double width = 0.0, height = 0.0;
};

/// True if one query of the list matches print; an empty list matches.
bool MatchesMedia(std::string_view queries, const Medium& medium);

/// A rule of a sheet that is not applied.
struct UnreadRule {
    enum class Kind : std::uint8_t {
        kAtRule,
        kAnimation,
        kSelectors,  ///< invalid selectors
        kTooMany,    ///< too many nested rules, or too deep nesting
    };
    Kind kind = Kind::kAtRule;
    ElementIndex sheet = Document::kRoot;  ///< the root element for external sheets
    std::string_view text;                 ///< the text in front of its block
};

/// The style sheets of a document, parsed into rules.
class StyleSheets {
public:
    /// A rule that matches an element.
    struct Match {
        std::uint32_t specificity;
        std::uint32_t rule;  ///< index of the rule in document order
        std::uint32_t rank;  ///< rank of its cascade layer; greater ones win
    };

    /// Parses all `style` elements that contain CSS for print.
    StyleSheets(const Document& document, const Medium& medium);

    bool IsEmpty() const { return rules_.empty(); }
    /// True if a sheet contains @import; imported sheets are not loaded.
    bool ImportsSheets() const { return importsSheets_; }

    /// Rules that were not applied, in document order, up to a maximum number.
    std::span<const UnreadRule> GetUnreadRules() const { return unreadRules_; }

    /// Calls `use(sheet, declaration)` for the declarations of all rules that are applied, in document order.
    template <class Use>
    void ForEachDeclaration(Use use) const {
        for (std::size_t part = 0; part < parts_.size(); ++part) {
            const std::size_t end = part + 1 < parts_.size() ? parts_[part + 1].begin : declarations_.size();
            for (std::size_t i = parts_[part].begin; i < end; ++i) use(parts_[part].sheet, declarations_[i]);
        }
    }

    /// The @font-face rules in document order.
    std::span<const FontFaceRule> GetFontFaces() const { return fontFaces_; }

    /// Finds the matching rules of an element, in ascending order of precedence.
    void FindMatches(SelectorMatcher& matcher, ElementIndex element, std::vector<Match>& matches) const;
    /// Sorts matches by the precedence of their important declarations, for which the order of layers is
    /// reversed.
    void OrderByImportance(std::vector<Match>& matches) const;
    std::span<const Declaration> DeclarationsOf(const Match& match) const;

private:
    struct Block {
        std::size_t begin, end;  // of declarations
    };
    /// The declarations of a sheet, up to those of the next one.
    struct SheetPart {
        std::size_t begin;
        ElementIndex sheet;
    };
    struct Rule {
        Selector selector;
        Block block;
        SheetLayers::Layer layer;  ///< its rank, once all sheets have been read
    };
    /// The context of nested rules.
    struct Surroundings {
        const Medium& medium;
        int depth = 0;
        SheetLayers::Layer layer = SheetLayers::kNone;
        SelectorList parents;  ///< selectors of the enclosing rule; null: none
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
    std::deque<std::string> texts_;  // referenced by string views
    SelectorNamespaces namespaces_;
    std::vector<Declaration> declarations_;
    std::vector<SheetPart> parts_;
    std::vector<Rule> rules_;
    // Indexed by a condition on the element itself: its identifier, class or type, in this order of
    // preference.
    Rules byId_, byClass_, byType_;
    std::vector<std::uint32_t> others_;
    std::vector<FontFaceRule> fontFaces_;
    std::vector<UnreadRule> unreadRules_;
    SheetLayers layers_;
    std::size_t rulesOfParents_ = 0;
    ElementIndex sheet_ = Document::kRoot;  // the sheet being read
    bool hasLayers_ = false;
    bool importsSheets_ = false;
};

}  // namespace svg2
