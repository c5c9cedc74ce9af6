// SPDX-License-Identifier: Apache-2.0

// Texts of standard SVG: the first lines are attribute values, the rest is the text of two spans.

#include <string>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/standard_documents.h"

namespace {

const FuzzTarget kTarget("standard_texts", [](std::string_view text) {
    const auto attribute = [&text](const char* name) {
        const std::string_view value = TakeLine(text);
        return value.empty() ? std::string() : std::string(" ") + name + "='" + InDocument(value) + "'";
    };
    const std::string x = attribute("x"), dy = attribute("dy"), rotate = attribute("rotate");
    const std::string length = attribute("textLength"), style = attribute("style");
    const std::string path = attribute("d"), start = attribute("startOffset");
    const std::size_t middle = text.size() / 2;
    const std::string first = InDocument(text.substr(0, middle)), second = InDocument(text.substr(middle));
    DrawStandard(StandardDrawing("<path id='a'" + path + "/><text y='20'" + x + style + ">" + first +
                                 "<tspan" + dy + rotate + length + ">" + second + "</tspan></text><text" +
                                 style + "><textPath href='#a'" + start + ">" + second +
                                 "</textPath></text>"));
});

}  // namespace
