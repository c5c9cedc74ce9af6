// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interpreters/svg2/css/Style.h"
#include "interpreters/svg2/css/StyleSheets.h"
#include "interpreters/svg2/css/StyleWork.h"
#include "interpreters/svg2/css/properties.h"
#include "interpreters/svg2/document/Document.h"

namespace svg2 {

/// Finds out what elements look like: attributes, rules of sheets and style attributes in their order.
/// Belongs to one thread at a time.
class Cascade {
public:
    /// @param document  must outlive the cascade and all styles that come of it
    /// @param work      that the cascade shares with others; null for its own
    Cascade(const Document& document, const Medium& medium, std::shared_ptr<StyleWork> work = nullptr);

    /// @param parent  of the element it inherits from; that around a reused element is the one that uses it
    /// @param style   out: of the element
    void Compute(ElementIndex element, const Style& parent, Style& style);

    /// Style that the root inherits from.
    static Style InitialStyle();

    /// What lengths of an element refer to.
    UnitSizes SizesOf(const Style& style) const;

    /// The text of a property of shape or place: of a sheet, else of the attribute; nothing when neither
    /// states it.
    std::optional<std::string_view> FindGeometry(ElementIndex element, Name name, const Style& style) const;

    /// False once styles have cost more than is in proportion; they are no longer to be relied on.
    bool IsWithinBudget() const { return !work_->IsSpent(); }
    const std::shared_ptr<StyleWork>& GetWork() const { return work_; }
    const StyleSheets& GetSheets() const { return sheets_; }

private:
    /// A value that may count, in rising order.
    struct Candidate {
        Name name;
        std::string_view value;
        bool isAttribute;
    };

    void Collect(ElementIndex element, Style& style);
    void AddDeclaration(const Declaration& declaration, Style& style);
    void AddVariable(const Declaration& declaration, Style& style);
    /// Gives a text a place where it stays.
    std::string_view Keep(std::string text);
    void AddStyleAttribute(std::string_view text, bool important, Style& style);
    void Apply(const Candidate& candidate, const PropertyContext& context, Style& style);
    bool Substitute(std::string_view text, const Style& style, std::string_view& result);
    bool SubstituteInto(std::string_view text, const Style& style, int depth, std::string& result);
    void ApplyCandidates(ElementIndex element, const Style& parent, Style& style);
    void NoteDecorations(const Style& parent, Style& style) const;
    void SetDecorationFonts(const std::vector<Decoration>& outer, Style& style) const;

    const Document& document_;
    std::shared_ptr<StyleWork> work_;
    StyleSheets sheets_;
    SelectorMatcher matcher_;
    Medium medium_;
    double rootFontSize_ = InitialStyle().fontSize;
    std::deque<std::string> texts_;  // that values of variables and stripped comments stand in
    std::vector<StyleSheets::Match> matches_;
    std::vector<Candidate> candidates_;
    std::shared_ptr<VariableScope> ownVariables_;  // of the element whose style is being computed
};

}  // namespace svg2
