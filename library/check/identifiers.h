// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "library/check/finding_writer.h"

/// Index of a document's elements by identifier. Refers to the document, which must outlive it.
class Identifiers {
public:
    explicit Identifiers(const ORVXmlNode& root) : root_(root) {}

    /// Replaces the index with the identifiers of a page. A duplicate identifier is a finding.
    void ReadPage(const NumberedElement& page, FindingWriter& findings);

    /// The first element on the page with that identifier, ignoring case; null if there is none.
    const ORVXmlNode* FindOnPage(std::string_view id) const;

    /// How letters are compared: case-sensitively or ignoring case.
    enum class Letters { kSame, kUpperOrLower };
    /// Whether the page has that identifier, or any other part of the document has it in the same case.
    /// @param onPage  how identifiers on the page are compared
    bool IsInDocument(std::string_view id, Letters onPage = Letters::kUpperOrLower);

private:
    const ORVXmlNode& root_;
    std::unordered_map<std::string, NumberedElement> ofPage_;  // keys in lower case
    std::unordered_set<std::string_view> ofDocument_;          // filled on first use
    bool hasReadDocument_ = false;
};
