// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/StyleSheets.h"

#include <algorithm>
#include <utility>

#include "interpreters/svg2/css/supports.h"
#include "interpreters/svg2/values/length.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

constexpr int kGreatestDepth = 16;  // nesting depth of rules
// generated from nested rules by repeating the parent's selectors
constexpr std::size_t kMostRulesOfParents = 100'000;
constexpr std::size_t kMostUnreadRules = 1000;

/// At-rules that do not affect a printed drawing.
constexpr std::string_view kHarmlessRules[] = {"charset", "counter-style", "starting-style",
                                               "view-transition"};

/// Takes the content of a block, without its braces. A block that is not closed extends to the end of the
/// sheet.
/// @return false if no block comes next
bool TakeBlock(Scanner& scanner, std::string_view& inside) {
    if (!scanner.Take('{')) return false;
    inside = scanner.TakeUntil("}");
    scanner.Take('}');
    return true;
}

/// Evaluates a media feature such as "(min-width: 600px)"; unknown features are false.
bool MatchesFeature(std::string_view feature, const Medium& medium) {
    Scanner scanner(feature);
    scanner.SkipSpace();
    const std::string_view name = scanner.TakeName();
    const bool hasValue = scanner.TakeAfterSpace(':');
    const std::string_view value = Trim(scanner.Rest());
    if (!hasValue) return EqualsIgnoringCase(name, "width") || EqualsIgnoringCase(name, "height");
    if (EqualsIgnoringCase(name, "orientation"))
        return EqualsIgnoringCase(value, medium.height >= medium.width ? "portrait" : "landscape");
    Length length;
    if (!ReadLength(value, UnitSizes{}, length)) return false;
    constexpr std::string_view kLeast = "min-", kMost = "max-";
    const bool isLeast = name.starts_with(kLeast), isMost = name.starts_with(kMost);
    const std::string_view side = isLeast || isMost ? name.substr(kLeast.size()) : name;
    const bool isWidth = EqualsIgnoringCase(side, "width");
    if (!isWidth && !EqualsIgnoringCase(side, "height")) return false;
    const double size = isWidth ? medium.width : medium.height;
    return isLeast ? size >= length.px : isMost ? size <= length.px : size == length.px;
}

bool MatchesQuery(std::string_view query, const Medium& medium) {
    Scanner scanner(Trim(query));
    bool negates = false, holds = true;
    std::string_view word = scanner.TakeName();
    if (EqualsIgnoringCase(word, "not") || EqualsIgnoringCase(word, "only")) {
        negates = EqualsIgnoringCase(word, "not");
        scanner.SkipSpace();
        word = scanner.TakeName();
    }
    if (!word.empty()) {
        holds = EqualsIgnoringCase(word, "all") || EqualsIgnoringCase(word, "print");
        scanner.SkipSpace();
        if (!scanner.AtEnd() && !EqualsIgnoringCase(scanner.TakeName(), "and")) return false;
    }
    for (scanner.SkipSpace(); !scanner.AtEnd(); scanner.SkipSpace()) {
        std::string_view feature;
        if (!scanner.TakeParentheses(feature)) return false;
        holds = holds && MatchesFeature(feature, medium);
        scanner.SkipSpace();
        if (!scanner.AtEnd() && !EqualsIgnoringCase(scanner.TakeName(), "and")) return false;
    }
    return holds != negates;
}

std::string_view Unquoted(std::string_view text) {
    Scanner scanner(text = Trim(text));
    std::string_view inside;
    if (EqualsIgnoringCase(text.substr(0, 4), "url(")) {
        scanner.Advance(3);
        return scanner.TakeParentheses(inside) ? Unquoted(inside) : text;
    }
    return scanner.TakeString(inside) ? inside : text;
}

}  // namespace

bool MatchesMedia(std::string_view queries, const Medium& medium) {
    if (Trim(queries).empty()) return true;
    for (;;) {
        const std::size_t comma = queries.find(',');
        if (MatchesQuery(queries.substr(0, comma), medium)) return true;
        if (comma == std::string_view::npos) return false;
        queries.remove_prefix(comma + 1);
    }
}

StyleSheets::StyleSheets(const Document& document, const Medium& medium) : document_(document) {
    for (const OuterSheet& sheet : document.GetOuterSheets())
        if (MatchesMedia(sheet.media, medium)) ReadWholeSheet(sheet.text, medium);
    for (const ElementIndex element : document.FindAll(Tag::kStyle)) {
        const std::string_view type = Trim(document.ValueOf(element, Name::kType));
        if (!type.empty() && !EqualsIgnoringCase(type, "text/css")) continue;
        if (!MatchesMedia(document.ValueOf(element, Name::kMedia), medium)) continue;
        sheet_ = element;
        ReadWholeSheet(document[element].node->GetText(), medium);
    }
    RankRules();
}

void StyleSheets::ReadWholeSheet(std::string_view text, const Medium& medium) {
    texts_.push_back(WithoutComments(text));
    parts_.push_back({declarations_.size(), sheet_});
    namespaces_.clear();
    ReadSheet(texts_.back(), {medium, 0, SheetLayers::kNone, nullptr, 0});
}

void StyleSheets::NoteUnread(UnreadRule::Kind kind, std::string_view text) {
    if (unreadRules_.size() < kMostUnreadRules) unreadRules_.push_back({kind, sheet_, Trim(text)});
}

void StyleSheets::ReadSheet(std::string_view text, const Surroundings& around) {
    Scanner scanner(text);
    for (;;) {
        scanner.SkipSpace();
        if (scanner.AtEnd()) return;
        // HTML comment marks around the sheet.
        if (scanner.Rest().starts_with("<!--")) {
            scanner.Advance(4);
            continue;
        }
        if (scanner.Rest().starts_with("-->")) {
            scanner.Advance(3);
            continue;
        }
        if (scanner.Take('@')) {
            ReadAtRule(scanner, around);
            continue;
        }
        const std::string_view selectors = scanner.TakeUntil("{;");
        std::string_view block;
        if (TakeBlock(scanner, block))
            ReadRule(selectors, block, around);
        else
            scanner.Take(';');  // a stray ";", or an incomplete rule at the end of the sheet
    }
}

/// Reads the rules in a block and, if it is nested in a style rule, its declarations.
void StyleSheets::ReadGroup(std::string_view block, const Surroundings& around) {
    if (around.depth > kGreatestDepth) return NoteUnread(UnreadRule::Kind::kTooMany, block);
    if (around.parents)
        ReadNestingBlock(block, around);
    else
        ReadSheet(block, around);
}

/// "@layer a, b;", which only declares an order.
void StyleSheets::ReadLayers(std::string_view names, const Surroundings& around) {
    for (Scanner scanner(names); !scanner.AtEnd(); scanner.Take(','))
        layers_.Find(scanner.TakeUntil(","), around.layer);
}

void StyleSheets::ReadNamespace(std::string_view prelude) {
    Scanner words(Trim(prelude));
    const std::string_view prefix = words.Rest().starts_with("url(") ? std::string_view() : words.TakeName();
    namespaces_[prefix] = Unquoted(words.Rest());
}

void StyleSheets::ReadAtRule(Scanner& scanner, const Surroundings& around) {
    const std::size_t start = scanner.GetPosition();
    const std::string_view from = scanner.Rest();
    const std::string_view name = scanner.TakeName();
    const std::string_view prelude = scanner.TakeUntil("{;");
    const std::string_view whole = from.substr(0, scanner.GetPosition() - start);
    const auto is = [name](std::string_view known) { return EqualsIgnoringCase(name, known); };
    std::string_view block;
    const bool hasBlock = TakeBlock(scanner, block);
    if (!hasBlock) scanner.Take(';');
    Surroundings inside = around;
    ++inside.depth;
    if (is("media") && hasBlock) {
        if (MatchesMedia(prelude, around.medium)) ReadGroup(block, inside);
    } else if (is("supports") && hasBlock) {
        if (MatchesSupports(prelude, ContextOf(around))) ReadGroup(block, inside);
    } else if (is("layer")) {
        hasLayers_ = true;
        if (!hasBlock) return ReadLayers(prelude, around);
        inside.layer = layers_.Find(prelude, around.layer);
        ReadGroup(block, inside);
    } else if (is("font-face") && hasBlock) {
        FontFaceRule rule;
        rule.sheet = sheet_;
        if (ReadFontFace(block, rule)) fontFaces_.push_back(std::move(rule));
    } else if (is("import")) {
        importsSheets_ = true;
    } else if (is("namespace") && !hasBlock) {
        ReadNamespace(prelude);
    } else if (name.ends_with("keyframes")) {
        NoteUnread(UnreadRule::Kind::kAnimation, whole);
    } else if (std::none_of(std::begin(kHarmlessRules), std::end(kHarmlessRules), is)) {
        NoteUnread(UnreadRule::Kind::kAtRule, whole);
    }
}

void StyleSheets::ReadDeclarations(std::string_view text) {
    Scanner scanner(text);
    for (Declaration declaration; TakeDeclaration(scanner, declaration);) {
        if (declaration.value.find('\\') != std::string_view::npos)
            declaration.value = texts_.emplace_back(Unescaped(declaration.value));
        declarations_.push_back(declaration);
    }
}

void StyleSheets::AddRule(Selector selector, std::size_t firstDeclaration, SheetLayers::Layer layer) {
    rules_.push_back({std::move(selector), {firstDeclaration, declarations_.size()}, layer});
    Index(static_cast<std::uint32_t>(rules_.size() - 1));
}

void StyleSheets::ReadRule(std::string_view text, std::string_view block, const Surroundings& around) {
    std::vector<Selector> selectors;
    if (!ReadSelectors(text, ContextOf(around), selectors))
        return NoteUnread(UnreadRule::Kind::kSelectors, text);
    if (block.find_first_of("{@") != std::string_view::npos) {
        Surroundings inside = around;
        ++inside.depth;
        inside.parentSpecificity = GreatestSpecificity(selectors);
        inside.parents = std::make_shared<const std::vector<Selector>>(std::move(selectors));
        return ReadGroup(block, inside);
    }
    const std::size_t begin = declarations_.size();
    ReadDeclarations(block);
    for (Selector& selector : selectors) AddRule(std::move(selector), begin, around.layer);
}

/// Adds rules with the parent's selectors for the declarations since `firstDeclaration`.
void StyleSheets::AddRulesOfParents(std::size_t firstDeclaration, const Surroundings& around) {
    if (firstDeclaration == declarations_.size()) return;
    rulesOfParents_ += around.parents->size();
    if (rulesOfParents_ > kMostRulesOfParents) return NoteUnread(UnreadRule::Kind::kTooMany, {});
    for (const Selector& selector : *around.parents) AddRule(selector, firstDeclaration, around.layer);
}

// Declarations keep their position relative to nested rules.
void StyleSheets::ReadNestingBlock(std::string_view block, const Surroundings& around) {
    Scanner scanner(block);
    std::size_t begin = declarations_.size();
    for (;;) {
        scanner.SkipSpace();
        if (scanner.AtEnd()) break;
        if (scanner.Peek() == '@') {
            AddRulesOfParents(begin, around);
            scanner.Advance();
            ReadAtRule(scanner, around);
            begin = declarations_.size();
            continue;
        }
        // Only values of custom properties may contain blocks.
        const std::string_view text = scanner.TakeUntil(scanner.Rest().starts_with("--") ? ";" : "{;");
        std::string_view inner;
        if (TakeBlock(scanner, inner)) {
            AddRulesOfParents(begin, around);
            ReadRule(text, inner, around);
            begin = declarations_.size();
        } else {
            ReadDeclarations(text);
            scanner.Take(';');
        }
    }
    AddRulesOfParents(begin, around);
}

void StyleSheets::RankRules() {
    if (!hasLayers_) return;
    const std::vector<std::uint32_t> ranks = layers_.Rank();
    for (Rule& rule : rules_)
        if (rule.layer != SheetLayers::kNone) rule.layer = ranks[rule.layer];
}

void StyleSheets::Index(std::uint32_t rule) {
    const CompoundSelector& own = rules_[rule].selector.compounds.front();
    if (!own.ids.empty())
        byId_[own.ids.front()].push_back(rule);
    else if (!own.classes.empty())
        byClass_[own.classes.front()].push_back(rule);
    else if (!own.type.empty())
        byType_[own.type].push_back(rule);
    else
        others_.push_back(rule);
}

void StyleSheets::TryRules(SelectorMatcher& matcher, ElementIndex element,
                           const std::vector<std::uint32_t>& rules, std::vector<Match>& matches) const {
    for (const std::uint32_t rule : rules)
        if (matcher.Matches(element, rules_[rule].selector))
            matches.push_back({rules_[rule].selector.specificity, rule, rules_[rule].layer});
}

void StyleSheets::FindMatches(SelectorMatcher& matcher, ElementIndex element,
                              std::vector<Match>& matches) const {
    matches.clear();
    if (rules_.empty()) return;
    const auto tryRulesOf = [&](const Rules& rules, std::string_view key) {
        if (const auto found = rules.find(key); found != rules.end())
            TryRules(matcher, element, found->second, matches);
    };
    const ORVXmlNode& node = *document_[element].node;
    if (const std::string_view id = node.Value(AttributeName::kId); !id.empty()) tryRulesOf(byId_, id);
    if (!byClass_.empty()) {
        ForEachWord(document_.ValueOf(element, Name::kClass), [&](std::string_view word) {
            tryRulesOf(byClass_, word);
            return true;
        });
    }
    std::string_view type = node.GetName();
    if (const std::size_t colon = type.find(':'); colon != std::string_view::npos)
        type.remove_prefix(colon + 1);
    tryRulesOf(byType_, type);
    TryRules(matcher, element, others_, matches);
    std::sort(matches.begin(), matches.end(), [](const Match& a, const Match& b) {
        if (a.rank != b.rank) return a.rank < b.rank;
        return a.specificity != b.specificity ? a.specificity < b.specificity : a.rule < b.rule;
    });
}

void StyleSheets::OrderByImportance(std::vector<Match>& matches) const {
    if (!hasLayers_) return;
    std::stable_sort(matches.begin(), matches.end(),
                     [](const Match& a, const Match& b) { return a.rank > b.rank; });
}

std::span<const Declaration> StyleSheets::DeclarationsOf(const Match& match) const {
    const Block& block = rules_[match.rule].block;
    return std::span(declarations_).subspan(block.begin, block.end - block.begin);
}

}  // namespace svg2
