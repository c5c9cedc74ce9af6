// SPDX-License-Identifier: Apache-2.0
#include "library/check/standard_check.h"

#include <string>
#include <unordered_map>
#include <vector>

#include "library/check/document_order.h"
#include "library/check/finding_writer.h"
#include "library/check/standard_checker.h"

namespace {

using svg2::Document;
using svg2::ElementIndex;

/// The style sheets linked before the root, where the parsed document has no nodes.
std::vector<svg2::OuterSheet> FindOuterSheets(const CheckedDocument& checked, bool keepsSource,
                                              Findings& findings) {
    if (!checked.fragments.empty()) return {};
    std::vector<std::string> lost;
    std::vector<svg2::OuterSheet> sheets =
        svg2::ReadOuterSheets(checked.text, ORVUnicodeString(checked.path), &lost);
    for (const std::string& reference : lost)
        FindingWriter(checked, findings)
            .Note(FindingCode::kStyleSheet, {checked.root, 0}, "", reference,
                  "the sheet cannot be read: none of its rules is applied");
    if (keepsSource || sheets.empty()) return sheets;
    FindingWriter(checked, findings)
        .Note(
            FindingCode::kStyleSheet, {checked.root, 0}, "", "<?xml-stylesheet?>",
            "the sheet is not read in a document with entities or of such an encoding: none of its rules is "
            "applied");
    return {};
}

}  // namespace

void CheckStandardDocument(const CheckedDocument& checked, const ORVRef<const ORVXmlTree>& tree,
                           Findings& findings) {
    std::unordered_map<const ORVXmlNode*, std::size_t> numbers;
    DocumentOrder order(*checked.root);
    std::size_t number = 0;
    while (const ORVXmlNode* node = order.Next())
        if (node->IsElement()) numbers.emplace(node, number++);
    std::vector<const ORVXmlNode*> roots(checked.fragments.begin(), checked.fragments.end());
    if (roots.empty()) roots.push_back(checked.root);
    for (const ORVXmlNode* root : roots) {
        Document document(tree, *root);
        if (document.IsSvg())
            document.SetOuterSheets(FindOuterSheets(checked, !tree->GetSource().empty(), findings));
        if (document.IsSvg())
            StandardChecker(checked, document, findings, numbers).Run();
        else
            FindingWriter(checked, findings)
                .Note(FindingCode::kForeignNamespace, {root, numbers[root]}, "", "",
                      "is no svg element of SVG's namespace");
    }
}

std::vector<std::uint32_t> CountStandardElements(const ORVRef<const ORVXmlTree>& tree, const ORVXmlNode& root,
                                                 const ORVXmlNode& top) {
    const Document document(tree, root);
    std::vector<std::uint32_t> numbers;
    numbers.reserve(document.GetCount());
    DocumentOrder order(top);
    std::uint32_t number = 0;
    while (const ORVXmlNode* node = order.Next()) {
        if (!node->IsElement()) continue;
        ++number;
        // Both are in document order, and the interpreter skips some elements.
        if (numbers.size() < document.GetCount() &&
            document[static_cast<ElementIndex>(numbers.size())].node == node)
            numbers.push_back(number);
    }
    return numbers;
}
