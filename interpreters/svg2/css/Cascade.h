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

/// Computes the styles of elements from presentation attributes, style sheets and style attributes, in
/// cascade order. Not thread-safe.
class Cascade {
public:
    /// @param document  must outlive the cascade and all styles computed by it
    /// @param work      budget shared with other cascades; null: a budget of its own
    Cascade(const Document& document, const Medium& medium, std::shared_ptr<StyleWork> work = nullptr);

    /// @param parent  style to inherit from; for a used element, that of its use element
    /// @param style   receives the computed style
    void Compute(ElementIndex element, const Style& parent, Style& style);

    /// The style that the root element inherits from.
    static Style InitialStyle();

    /// Reference sizes for lengths of an element.
    UnitSizes SizesOf(const Style& style) const;

    /// The text of a geometry property: from a style sheet, else from the attribute; nothing if neither
    /// states it.
    std::optional<std::string_view> FindGeometry(ElementIndex element, Name name, const Style& style) const;

    /// False once computing styles has exceeded its budget; styles are then incomplete.
    bool IsWithinBudget() const { return !work_->IsSpent(); }
    const std::shared_ptr<StyleWork>& GetWork() const { return work_; }
    const StyleSheets& GetSheets() const { return sheets_; }

private:
    /// A candidate value with its priority in the cascade.
    struct Candidate {
        Name name;
        std::string_view value;
        bool isAttribute;
    };

    void Collect(ElementIndex element, Style& style);
    void AddDeclaration(const Declaration& declaration, Style& style);
    void AddVariable(const Declaration& declaration, Style& style);
    /// Stores a text for the lifetime of the cascade.
    std::string_view Keep(std::string text);
    void AddStyleAttribute(std::string_view text, bool important, Style& style);
    void Apply(const Candidate& candidate, const PropertyContext& context, Style& style);
    bool Substitute(std::string_view text, const Style& style, std::string_view& result);
    bool SubstituteInto(std::string_view text, const Style& style, int depth, std::string& result);
    void ApplyCandidates(ElementIndex element, const Style& parent, Style& style);
    static void NoteAdjustingFont(Style& style);
    void NoteDecorations(const Style& parent, Style& style) const;
    void SetDecorationFonts(const std::vector<Decoration>& outer, Style& style) const;

    const Document& document_;
    std::shared_ptr<StyleWork> work_;
    StyleSheets sheets_;
    SelectorMatcher matcher_;
    Medium medium_;
    double rootFontSize_ = InitialStyle().fontSize;
    std::deque<std::string> texts_;  // stored values of variables and texts without comments
    std::vector<StyleSheets::Match> matches_;
    std::vector<Candidate> candidates_;
    std::shared_ptr<VariableScope> ownVariables_;  // the element whose style is being computed
};

}  // namespace svg2
