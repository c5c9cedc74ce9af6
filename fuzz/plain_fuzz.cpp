// Holds the reader of plain documents to the conforming parser: what it takes is well formed and gives the
// same events.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tests/platform/xml/event_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    for (const XmlEncoding encoding : {XmlEncoding::kDeclared, XmlEncoding::kUtf8}) {
        const auto plain = PlainEvents(bytes, encoding);
        if (plain && plain != ConformingEvents(bytes, encoding)) std::abort();
    }
    return 0;
}
