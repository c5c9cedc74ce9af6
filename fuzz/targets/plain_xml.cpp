// SPDX-License-Identifier: Apache-2.0

// The reader of plain documents: whatever it accepts must be well formed and give the same events as the
// conforming parser.

#include "fuzz/support/FuzzTarget.h"
#include "tests/platform/xml/event_text.h"

namespace {

const FuzzTarget kTarget("plain_xml", [](std::string_view bytes) {
    for (const XmlEncoding encoding : {XmlEncoding::kDeclared, XmlEncoding::kUtf8}) {
        const auto plain = PlainEvents(bytes, encoding);
        Require(!plain || plain == ConformingEvents(bytes, encoding));
    }
});

}  // namespace
