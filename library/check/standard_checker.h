// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "interpreters/svg2/css/Cascade.h"
#include "interpreters/svg2/document/Document.h"
#include "interpreters/svg2/drawing/Images.h"
#include "interpreters/svg2/tree/DocumentFonts.h"
#include "interpreters/svg2/tree/page_size.h"
#include "library/check/finding_writer.h"

/// Checks one drawing of standard SVG. Refers to what the constructor takes, which must outlive it.
class StandardChecker {
public:
    StandardChecker(const CheckedDocument& checked, const svg2::Document& document, Findings& findings,
                    const std::unordered_map<const ORVXmlNode*, std::size_t>& numbers)
        : document_(document),
          writer_(checked, findings),
          numbers_(numbers),
          cascade_(document, Medium(document)),
          images_(ORVUnicodeString(checked.path)),
          fonts_(cascade_.GetSheets().GetFontFaces()) {}

    /// Checks every element, and the style sheets.
    void Run();

private:
    static svg2::Medium Medium(const svg2::Document& document) {
        const svg2::Viewport size = svg2::FindImageSize(document);
        return {size.width, size.height};
    }

    NumberedElement At(const ORVXmlNode* node) const {
        const auto found = numbers_.find(node);
        return {node, found == numbers_.end() ? ~std::size_t{0} : found->second};
    }
    void Note(FindingCode code, svg2::ElementIndex element, std::string_view attribute,
              std::string_view value, const std::string& message) {
        writer_.Note(code, At(document_[element].node), attribute, value, message);
    }
    /// An element on the way down to the one that is checked.
    struct Around {
        svg2::ElementIndex element;
        std::unique_ptr<svg2::Style> style;
        bool isHidden;
        svg2::ElementIndex shown;  ///< of a "switch": its child that shows
    };
    bool IsHidden(svg2::ElementIndex element, const svg2::Style& style, const Around* around);
    bool IsUsed(svg2::ElementIndex element);
    void CheckSheet(svg2::ElementIndex sheet);
    void CheckFontFaces();
    void CheckRules();
    void CheckElement(svg2::ElementIndex element, const svg2::Style& style, bool isHidden);
    void CheckUnread(svg2::ElementIndex element, bool isHidden);
    void CheckUnknown(svg2::ElementIndex element, bool isHidden);
    void CheckImage(svg2::ElementIndex element);
    void CheckFont(svg2::ElementIndex element, const svg2::Style& style);
    bool HasText(svg2::ElementIndex element) const;

    // ---- values (standard_values.cpp) ----

    void CheckValues(svg2::ElementIndex element);
    /// Reports what a value of a property loses here. @return false if that is nothing
    bool NoteLosses(svg2::ElementIndex element, std::string_view property, std::string_view value);
    void CheckPresentation(svg2::ElementIndex element, svg2::Name name, std::string_view value);
    void CheckStyle(svg2::ElementIndex element, std::string_view style);
    void CheckDeclaration(svg2::ElementIndex element, const svg2::Declaration& declaration);
    void CheckSheetValues();

    // ---- references (standard_references.cpp) ----

    void CheckPaint(svg2::ElementIndex element, const svg2::Paint& paint, std::string_view property);
    void CheckReference(svg2::ElementIndex element, std::string_view property, std::string_view value,
                        std::initializer_list<svg2::Tag> tags);
    void CheckFilter(svg2::ElementIndex element, const svg2::Style& style);
    void CheckPrimitive(svg2::ElementIndex element);
    void CheckFilterImage(svg2::ElementIndex element);
    void CheckHref(svg2::ElementIndex element);
    void CheckMarkers(svg2::ElementIndex element, const svg2::Style& style);
    void CheckInclusions(svg2::ElementIndex element);
    std::string_view NamespaceAt(svg2::ElementIndex element, std::string_view declaration) const;

    const svg2::Document& document_;
    FindingWriter writer_;
    const std::unordered_map<const ORVXmlNode*, std::size_t>& numbers_;
    svg2::Cascade cascade_;
    const svg2::Style initial_ = svg2::Cascade::InitialStyle();
    svg2::Style read_;  // receives values that are only tried
    svg2::Images images_;
    svg2::DocumentFonts fonts_;
    std::unordered_set<std::string_view> families_;  // already looked up
    std::unordered_set<svg2::ElementIndex> used_;    // what "use" and its like show, once it is asked for
    bool knowsUsed_ = false;
};
