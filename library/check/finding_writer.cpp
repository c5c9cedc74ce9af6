// SPDX-License-Identifier: Apache-2.0
#include "library/check/finding_writer.h"

#include <utility>

#include "library/check/attribute_places.h"

void FindingWriter::Note(FindingCode code, const NumberedElement& element, std::string_view attribute,
                         std::string_view value, std::string message) {
    if (!findings_.Count(code)) return;
    ORVXmlPlace place = PlaceOf(element.index);
    if (!attribute.empty() && place.line > 0) place = FindAttributePlace(document_.text, place, attribute);
    findings_.Add({code, place.line, place.column, Excerpt(element.node->GetName()), Excerpt(attribute),
                   Excerpt(value), std::move(message)});
}

void FindingWriter::Note(const NumberedElement& element, std::string_view attribute, std::string_view value,
                         const ValueProblem& problem) {
    Note(problem.code, element, attribute, value, problem.message);
}

ORVXmlPlace FindingWriter::PlaceOf(std::size_t index) const {
    const bool isKnown = document_.places && index < document_.places->size();
    return isKnown ? (*document_.places)[index] : ORVXmlPlace{};
}
