// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

#include "library/check/finding_writer.h"

/// The elements of a document by their identifiers. Refers to the document.
class Identifiers {
public:
    explicit Identifiers(const ORVXmlNode& root) : root_(root) {}

    /// Takes in the identifiers of a page, in place of those of the page before. One that is given twice is a
    /// finding.
    void ReadPage(const NumberedElement& page, FindingWriter& findings);

    /// The first element of the page with that identifier, without regard to the case of letters; null when
    /// there is none.
    const ORVXmlNode* FindOnPage(std::string_view id) const;

    /// How identifiers are compared.
    enum class Letters { kSame, kUpperOrLower };
    /// Whether the page has it, or any other part of the document in the same letters.
    /// @param onPage  whether upper and lower case count on the page, too
    bool IsInDocument(std::string_view id, Letters onPage = Letters::kUpperOrLower);

private:
    const ORVXmlNode& root_;
    std::unordered_map<std::string, NumberedElement> ofPage_;  // in lower case
    std::unordered_set<std::string_view> ofDocument_;          // read when first asked for
    bool hasReadDocument_ = false;
};
