// SPDX-License-Identifier: Apache-2.0
#include "library/check/identifiers.h"

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/structure/walker.h"
#include "library/check/document_order.h"

void Identifiers::ReadPage(const NumberedElement& page, FindingWriter& findings) {
    // A new table: clearing takes time in proportion to the capacity that an earlier page may have caused.
    ofPage_ = decltype(ofPage_)();
    DocumentOrder order(*page.node);
    NumberedElement element{order.Next(), page.index};
    for (; element.node; element = {order.Next(), element.index + 1}) {
        const std::string_view id = element.node->Value(AttributeName::kId);
        if (id.empty()) continue;
        const auto [found, isNew] = ofPage_.try_emplace(FoldIdentifier(id), element);
        const NumberedElement& first = found->second;
        if (isNew || !HasHandler(element.node->id) || !HasHandler(first.node->id)) continue;
        const bool isSame = first.node->Value(AttributeName::kId) == id;
        findings.Note(FindingCode::kDuplicateId, element, "id", id,
                      "also the identifier of the element on line " +
                          std::to_string(findings.PlaceOf(first.index).line) +
                          (isSame ? "" : ", since identifiers are case-insensitive"));
    }
}

const ORVXmlNode* Identifiers::FindOnPage(std::string_view id) const {
    const auto found = ofPage_.find(FoldIdentifier(id));
    return found == ofPage_.end() ? nullptr : found->second.node;
}

bool Identifiers::IsInDocument(std::string_view id, Letters onPage) {
    if (const ORVXmlNode* found = FindOnPage(id))
        if (onPage == Letters::kUpperOrLower || found->Value(AttributeName::kId) == id) return true;
    if (!hasReadDocument_) {
        hasReadDocument_ = true;
        DocumentOrder order(root_);
        while (const ORVXmlNode* node = order.Next())
            if (node->Has(AttributeName::kId)) ofDocument_.insert(node->Value(AttributeName::kId));
    }
    return ofDocument_.contains(id);
}
