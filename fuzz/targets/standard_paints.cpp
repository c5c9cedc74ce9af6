// SPDX-License-Identifier: Apache-2.0

// Paints of standard SVG: each line is an attribute value of a gradient, a pattern, or a painted shape.

#include <string>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/standard_documents.h"

namespace {

const FuzzTarget kTarget("standard_paints", [](std::string_view text) {
    const auto attribute = [&text](const char* name) {
        const std::string_view value = TakeLine(text);
        return value.empty() ? std::string() : std::string(" ") + name + "='" + InDocument(value) + "'";
    };
    const std::string fill = attribute("fill"), stroke = attribute("stroke"),
                      width = attribute("stroke-width");
    const std::string dashes = attribute("stroke-dasharray"), offset = attribute("offset");
    const std::string colour = attribute("stop-color"), x1 = attribute("x1"), r = attribute("r");
    const std::string fx = attribute("fx"), units = attribute("gradientUnits");
    const std::string transform = attribute("gradientTransform"), spread = attribute("spreadMethod");
    const std::string side = attribute("width"), box = attribute("viewBox"), data = attribute("d");
    const std::string stops = "<stop" + offset + colour + "/><stop offset='1'/>";
    DrawStandard(StandardDrawing("<linearGradient id='a'" + x1 + units + transform + spread + ">" + stops +
                                 "</linearGradient><radialGradient id='b' href='#a'" + r + fx +
                                 "/>"
                                 "<pattern id='c' height='9'" +
                                 side + box +
                                 "><circle r='2' fill='url(#b)'/></pattern>"
                                 "<g" +
                                 stroke + width + dashes + "><rect x='9' width='50' height='30'" + fill +
                                 "/>"
                                 "<path fill='url(#a)'" +
                                 data +
                                 "/><circle r='20' fill='url(#c)'/>"
                                 "<path fill='none' stroke='url(#b)'" +
                                 data + "/></g>"));
});

}  // namespace
