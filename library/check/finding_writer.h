// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "library/check/checked_document.h"
#include "library/check/findings.h"
#include "library/check/value_checks.h"

/// An element and its number in document order, by which its place is known.
struct NumberedElement {
    const ORVXmlNode* node = nullptr;
    std::size_t index = 0;
};

/// Puts findings down with the places where they are written. Refers to the document and to the findings.
class FindingWriter {
public:
    FindingWriter(const CheckedDocument& document, Findings& findings)
        : document_(document), findings_(findings) {}

    /// @param attribute  name as written; empty for a finding about the element as a whole
    /// @param value      what is written there; an excerpt of it is kept
    void Note(FindingCode code, const NumberedElement& element, std::string_view attribute,
              std::string_view value, std::string message);
    void Note(const NumberedElement& element, std::string_view attribute, std::string_view value,
              const ValueProblem& problem);

    /// Counts an element or attribute of another vocabulary.
    void CountForeign() { findings_.CountForeign(); }

    /// The place of a start tag; line 0 when it is not known.
    ORVXmlPlace PlaceOf(std::size_t index) const;

private:
    const CheckedDocument& document_;
    Findings& findings_;
};
