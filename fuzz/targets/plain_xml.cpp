// SPDX-License-Identifier: Apache-2.0

// The reader of plain documents, held to the conforming parser: what it takes is well formed and gives the
// same events.

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
