// SPDX-License-Identifier: Apache-2.0

// The cascade of standard SVG: a style attribute in the first line, a style sheet in the others, applied to
// elements for many kinds of selectors.

#include <string>

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/standard_documents.h"

namespace {

const FuzzTarget kTarget("standard_styles", [](std::string_view text) {
    const std::string attribute = InDocument(TakeLine(text)), sheet = InDocument(text);
    DrawStandard(StandardDrawing(
        "<style>" + sheet +
        "</style><linearGradient id='a'><stop/><stop offset='1' stop-color='red'/></linearGradient>"
        "<clipPath id='b'><circle r='9'/></clipPath><mask id='c'><rect width='9' height='9'/></mask>"
        "<marker id='d'><path d='M0 0h1v1'/></marker>"
        "<g id='e' class='f g' lang='en' style='--a:red;--b:var(--a)'>"
        "<path style='" +
        attribute +
        "' d='M1 1h9v9z'/><rect class='f' width='9' height='9'/>"
        "<g class='g'><circle r='5' fill='url(#a)'/><text id='h' y='9'>a</text></g><use href='#h'/></g>"));
});

}  // namespace
