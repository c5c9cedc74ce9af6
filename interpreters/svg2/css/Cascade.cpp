// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/Cascade.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "interpreters/svg2/css/sheet_values.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintPreferences.h"

namespace svg2 {
namespace {

constexpr std::uint64_t kStepsPerDeclaration = 8;
constexpr int kGreatestVariableDepth = 32;
constexpr std::size_t kLongestSubstitution = std::size_t{1} << 16U;  // in bytes

/// A property's value on an ancestor, as a style sheet stated it.
std::optional<std::string_view> FindRule(const Style& style, Name name) {
    if (!style.geometry) return std::nullopt;
    for (auto rule = style.geometry->rbegin(); rule != style.geometry->rend(); ++rule)
        if (rule->first == name) return rule->second;
    return std::nullopt;
}

}  // namespace

Cascade::Cascade(const Document& document, const Medium& medium, std::shared_ptr<StyleWork> work)
    : document_(document),
      work_(work ? std::move(work) : std::make_shared<StyleWork>(document.GetCount())),
      sheets_(document, medium),
      matcher_(document, *work_),
      medium_(medium) {}

Style Cascade::InitialStyle() {
    Style style;
    style.fontSize = ORVPrintPreferences::Get().fontSize;
    return style;
}

UnitSizes Cascade::SizesOf(const Style& style) const {
    UnitSizes sizes;
    sizes.fontSize = style.fontSize;
    sizes.rootFontSize = rootFontSize_;
    sizes.xHeight = sizes.zeroWidth = style.fontSize / 2.0;
    sizes.viewportWidth = medium_.width;
    sizes.viewportHeight = medium_.height;
    return sizes;
}

std::optional<std::string_view> Cascade::FindGeometry(ElementIndex element, Name name,
                                                      const Style& style) const {
    const std::optional<std::string_view> rule = FindRule(style, name);
    return rule ? rule : document_.Find(element, name);
}

// Most elements share their parent's variables; elements that declare some get a scope of their own.
void Cascade::AddVariable(const Declaration& declaration, Style& style) {
    if (!ownVariables_) {
        ownVariables_ = std::make_shared<VariableScope>();
        ownVariables_->outer = std::exchange(style.variables, ownVariables_);
    }
    ownVariables_->own[declaration.name] = declaration.value;
}

void Cascade::AddDeclaration(const Declaration& declaration, Style& style) {
    work_->Take(kStepsPerDeclaration);
    if (declaration.name.starts_with("--")) {
        AddVariable(declaration, style);
        return;
    }
    if (const std::optional<Name> name = FindProperty(declaration.name))
        candidates_.push_back({*name, declaration.value, false});
}

std::string_view Cascade::Keep(std::string text) {
    work_->TakeText(text.size());
    work_->TakeKept(text.size());
    return texts_.emplace_back(std::move(text));
}

void Cascade::AddStyleAttribute(std::string_view text, bool important, Style& style) {
    Scanner scanner(text);
    for (Declaration declaration; TakeDeclaration(scanner, declaration);)
        if (declaration.isImportant == important) {
            if (declaration.value.find('\\') != std::string_view::npos)
                declaration.value = Keep(Unescaped(declaration.value));
            AddDeclaration(declaration, style);
        }
}

void Cascade::Collect(ElementIndex element, Style& style) {
    candidates_.clear();
    ownVariables_.reset();
    document_.ForEachProperty(element, [this](Name name, std::string_view value) {
        if (name == Name::kFontFamily && value.find('\\') != std::string_view::npos)
            value = Keep(Unescaped(WithoutComments(value)));
        candidates_.push_back({name, value, true});
    });
    std::string_view attribute = document_.ValueOf(element, Name::kStyle);
    if (attribute.find("/*") != std::string_view::npos || attribute.find('\\') != std::string_view::npos)
        attribute = Keep(WithoutComments(attribute));
    if (sheets_.IsEmpty() && attribute.empty()) return;

    matches_.clear();
    if (IsWithinBudget()) sheets_.FindMatches(matcher_, element, matches_);
    bool hasImportant = false;
    for (const StyleSheets::Match& match : matches_) {
        for (const Declaration& declaration : sheets_.DeclarationsOf(match)) {
            hasImportant = hasImportant || declaration.isImportant;
            if (!declaration.isImportant) AddDeclaration(declaration, style);
        }
    }
    AddStyleAttribute(attribute, false, style);
    if (hasImportant) {
        sheets_.OrderByImportance(matches_);
        for (const StyleSheets::Match& match : matches_)
            for (const Declaration& declaration : sheets_.DeclarationsOf(match))
                if (declaration.isImportant) AddDeclaration(declaration, style);
    }
    if (attribute.find('!') != std::string_view::npos) AddStyleAttribute(attribute, true, style);
}

namespace {

/// The value of a variable; null if neither the element nor an ancestor declares it.
const std::string_view* FindVariable(const Style& style, std::string_view name, StyleWork& work) {
    for (const VariableScope* scope = style.variables.get(); scope; scope = scope->outer.get()) {
        work.Take();
        if (const auto found = scope->own.find(name); found != scope->own.end()) return &found->second;
    }
    return nullptr;
}

}  // namespace

bool Cascade::SubstituteInto(std::string_view text, const Style& style, int depth, std::string& result) {
    work_->TakeText(text.size());
    if (depth > kGreatestVariableDepth || work_->IsSpent()) return false;
    for (;;) {
        const std::size_t start = text.find("var(");
        result += text.substr(0, start);
        if (result.size() > kLongestSubstitution) return false;
        if (start == std::string_view::npos) return true;
        Scanner scanner(text.substr(start + 3));
        std::string_view inside;
        if (!scanner.TakeParentheses(inside)) return false;
        text = scanner.Rest();
        const std::size_t comma = inside.find(',');
        const std::string_view name = Trim(inside.substr(0, comma));
        if (const std::string_view* known = FindVariable(style, name, *work_)) {
            if (!SubstituteInto(*known, style, depth + 1, result)) return false;
        } else if (comma == std::string_view::npos ||
                   !SubstituteInto(inside.substr(comma + 1), style, depth + 1, result)) {
            return false;
        }
    }
}

bool Cascade::Substitute(std::string_view text, const Style& style, std::string_view& result) {
    std::string substituted;
    if (!SubstituteInto(text, style, 0, substituted)) return false;
    work_->TakeKept(substituted.size());
    result = texts_.emplace_back(std::move(substituted));
    return true;
}

void Cascade::Apply(const Candidate& candidate, const PropertyContext& context, Style& style) {
    std::string_view value = candidate.value;
    // Attributes are short and numerous, so var() is read only as the whole of an attribute.
    const bool hasVariables =
        candidate.isAttribute ? value.starts_with("var(") : value.find("var(") != std::string_view::npos;
    // An invalid value after substitution cannot fall back to an earlier declaration, as CSS defines it.
    if (hasVariables && !Substitute(value, style, value)) value = "unset";
    if (IsGeometry(candidate.name)) {
        if (EqualsIgnoringCase(Trim(value), "inherit"))
            value = FindRule(context.parent, candidate.name).value_or("initial");
        if (!IsGeometryValue(candidate.name, value, context.sizes)) return;
        if (!style.geometry) style.geometry = std::make_shared<GeometryRules>();
        const auto isOfName = [&](const auto& rule) { return rule.first == candidate.name; };
        const auto stated = std::find_if(style.geometry->begin(), style.geometry->end(), isOfName);
        if (stated == style.geometry->end())
            style.geometry->emplace_back(candidate.name, value);
        else
            stated->second = value;
    } else if (candidate.name == Name::kAll) {
        for (std::size_t i = 0; i <= static_cast<std::size_t>(kLastProperty); ++i) {
            const auto name = static_cast<Name>(i);
            if (name != Name::kDirection && name != Name::kUnicodeBidi)
                SetProperty(name, value, context, style);
        }
    } else if (!SetProperty(candidate.name, value, context, style) && hasVariables) {
        SetProperty(candidate.name, "unset", context, style);
    }
}

namespace {

void SetFont(Decoration& decoration, const Style& style) {
    decoration.fontSize = style.fontSize;
    decoration.fontFamily = style.fontFamily;
    decoration.fontWeight = style.fontWeight;
    decoration.isItalic = style.isItalic;
}

}  // namespace

// Descendants inherit the metric of this element's font, so the font is known only when all else is.
void Cascade::NoteAdjustingFont(Style& style) {
    FontSizeAdjustment& adjustment = style.fontSizeAdjustment;
    if (!adjustment.isFromFont || adjustment.font) return;
    adjustment.font = std::make_shared<const FontKey>(FontKey{style.fontFamily, style.fontWeight,
                                                              style.isItalic, style.fontStretch,
                                                              style.fontSize, style.fontVariationSettings});
}

// Decoration lines belong to the element that declares them and extend through its descendants.
void Cascade::NoteDecorations(const Style& parent, Style& style) const {
    if (style.decorationLines == 0) return;
    auto decorations = parent.decorations ? std::make_shared<std::vector<Decoration>>(*parent.decorations)
                                          : std::make_shared<std::vector<Decoration>>();
    Decoration decoration;
    decoration.lines = style.decorationLines;
    decoration.style = style.decorationStyle;
    if (style.decorationThickness) decoration.thickness = style.decorationThickness->Resolve(style.fontSize);
    decoration.fill = style.fill;
    decoration.stroke = style.stroke;
    decoration.fillOpacity = style.fillOpacity;
    decoration.strokeOpacity = style.strokeOpacity;
    decoration.strokeWidth = style.strokeWidth;
    decoration.colour = style.colour;
    SetFont(decoration, style);
    decorations->push_back(decoration);
    style.decorations = std::move(decorations);
}

/// Decoration lines of ancestors of the text element are placed by the font of the text.
void Cascade::SetDecorationFonts(const std::vector<Decoration>& outer, Style& style) const {
    auto decorations = std::make_shared<std::vector<Decoration>>(*style.decorations);
    for (std::size_t i = 0; i < outer.size(); ++i) SetFont((*decorations)[i], style);
    style.decorations = std::move(decorations);
}

void Cascade::Compute(ElementIndex element, const Style& parent, Style& style) {
    static_cast<InheritedStyle&>(style) = parent.GetInherited();
    static_cast<OwnStyle&>(style) = OwnStyle{};

    // xml:space is an attribute only; any declaration of the property overrides it.
    if (const std::string_view space = document_.ValueOf(element, Name::kSpace); !space.empty())
        style.whiteSpace = space == "preserve" ? WhiteSpace::kPreserve : WhiteSpace::kCollapse;

    Collect(element, style);
    if (!candidates_.empty()) ApplyCandidates(element, parent, style);
    if (parent.decorations && document_[element].tag == Tag::kText)
        SetDecorationFonts(*parent.decorations, style);
}

void Cascade::ApplyCandidates(ElementIndex element, const Style& parent, Style& style) {
    PropertyContext context{parent, SizesOf(parent)};
    // A shorthand resets the longhands before it, so it is applied in order with the others.
    bool hasShorthand = false;
    const auto applyThose = [&](bool decidingSize) {
        for (const Candidate& candidate : candidates_) {
            const bool decides = DecidesFontSize(candidate.name);
            hasShorthand = hasShorthand || candidate.name == Name::kFont;
            if (decides != decidingSize && !(decides && hasShorthand)) continue;
            context.isAttribute = candidate.isAttribute;
            Apply(candidate, context, style);
        }
    };
    applyThose(true);
    if (element == Document::kRoot) rootFontSize_ = style.fontSize;
    context.sizes = SizesOf(style);
    applyThose(false);
    NoteAdjustingFont(style);
    NoteDecorations(parent, style);
}

}  // namespace svg2
