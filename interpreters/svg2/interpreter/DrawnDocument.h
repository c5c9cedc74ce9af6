// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interpreters/svg2/document/Document.h"
#include "interpreters/svg2/tree/Scene.h"
#include "interpreters/svg2/values/view_box.h"
#include "platform/system/ORVUnicodeString.h"

class ORVPrintGenerator;
class ORVPrintParameters;

namespace svg2 {

/// User units of 1/90 inch per px of 1/96 inch.
inline constexpr double kUserUnitsPerPx = 90.0 / 96.0;

/// A page of a document.
struct Page {
    Rectangle area;          ///< area of the root's viewport, in px
    std::string_view label;  ///< assigned by an editor; may be empty

    double GetWidth() const { return area.width * kUserUnitsPerPx; }    ///< in user units of 1/90 inch
    double GetHeight() const { return area.height * kUserUnitsPerPx; }  ///< in user units of 1/90 inch
};

/// A document with its pages, and the function that draws them.
class DrawnDocument {
public:
    explicit DrawnDocument(std::string bytes);
    /// @param root  an element of `tree`
    DrawnDocument(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* root);

    void SetPath(const ORVUnicodeString& path) { path_ = path; }

    /// Parses the document on the first call.
    /// @return false if it is not well-formed SVG
    bool Parse();
    /// At least one page once the document is parsed.
    const std::vector<Page>& GetPages() const { return pages_; }
    /// The page's label or else the document's title; may be empty.
    std::string_view GetTitle(const Page& page) const;

    /// Draws pages.
    /// @param numbers  counted from 1, in output order
    /// @return like ORVPrintInterpreter::Print
    int Draw(const std::vector<unsigned int>& numbers, ORVPrintGenerator* generator,
             const ORVPrintParameters& parameters);

private:
    int DrawPages(const std::vector<unsigned int>& numbers, ORVPrintGenerator& target,
                  const ORVPrintParameters& parameters);
    void FindPages();

    std::string bytes_;
    ORVRef<const ORVXmlTree> tree_;
    const ORVXmlNode* root_ = nullptr;
    bool isParsed_ = false;
    ORVUnicodeString path_;
    std::unique_ptr<Document> document_;
    Viewport size_;  // of the root, in px
    std::vector<Page> pages_;
    std::string_view title_;  // of the document
};

}  // namespace svg2
