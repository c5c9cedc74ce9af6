// SPDX-License-Identifier: Apache-2.0
#include "library/check/unit_checks.h"

#include "interpreters/svg/state/statuses.h"
#include "platform/system/number_conversion.h"

void CheckUnit(CheckContext& check, const NumberedElement& element, std::string_view attribute,
               std::string_view value) {
    double number = 0.0;
    if (element.node == check.page.node || value.find('%') != value.npos) return;
    if (ORVConvertToDouble(value, number) != kRead || number == 0.0) return;
    if (!check.isPageInUnits) {
        if (HasPhysicalUnit(value))
            check.findings.Note(FindingCode::kUnitScale, element, attribute, value,
                                "is 6 % smaller than in other programs, relative to numbers without a unit");
    } else if (!HasPhysicalUnit(value) && !check.isUnitScaleTold) {
        // Reported once for the page: all its content is larger.
        check.isUnitScaleTold = true;
        check.findings.Note(FindingCode::kUnitScale, check.page, {}, {},
                            "its size has a unit and numbers on it have none: its content is 7 % larger than "
                            "in other programs; a viewBox avoids that");
    }
}
