// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/view_box.h"

#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/values/text_scan.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/system/number_conversion.h"

int ReadViewBox(std::string_view text, ORVPrtViewBox& box) {
    if (text.empty()) return kEmpty;

    for (double* number : {&box.minX, &box.minY, &box.width}) {
        text = SkipBlanks(text);
        const std::size_t blank = text.find(' ');
        if (blank == text.npos) continue;  // the remaining text is used for the next number
        ORVConvertToDouble(text.substr(0, blank), *number);
        text.remove_prefix(blank);
    }
    text = SkipBlanks(text);
    ORVConvertToDouble(text.substr(0, text.find(' ')), box.height);
    return kRead;
}
