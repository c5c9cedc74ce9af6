// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "library/check/checked_document.h"
#include "library/check/findings.h"
#include "library/check/value_checks.h"

/// An element and its index in document order, which gives its position.
struct NumberedElement {
    const ORVXmlNode* node = nullptr;
    std::size_t index = 0;
};

/// Records findings with their positions. Refers to the document and the findings, which must outlive it.
class FindingWriter {
public:
    FindingWriter(const CheckedDocument& document, Findings& findings)
        : document_(document), findings_(findings) {}

    /// @param attribute  name as written; empty for a finding about the whole element
    /// @param value      the value as written; only an excerpt is kept
    void Note(FindingCode code, const NumberedElement& element, std::string_view attribute,
              std::string_view value, std::string message);
    void Note(const NumberedElement& element, std::string_view attribute, std::string_view value,
              const ValueProblem& problem);

    /// Counts an element or attribute of another namespace.
    void CountForeign() { findings_.CountForeign(); }

    /// Position of a start tag; line 0 if unknown.
    ORVXmlPlace PlaceOf(std::size_t index) const;

private:
    const CheckedDocument& document_;
    Findings& findings_;
};
