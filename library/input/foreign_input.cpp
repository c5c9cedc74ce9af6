// SPDX-License-Identifier: Apache-2.0
#include "library/input/foreign_input.h"

#include <algorithm>
#include <array>

namespace {

struct Kind {
    std::string_view start, name;
};

constexpr std::array kKinds{
    Kind{"%PDF-", "a PDF document"},
    Kind{"\x89PNG\r\n\x1A\n", "a PNG image"},
    Kind{"\xFF\xD8\xFF", "a JPEG image"},
    Kind{"GIF87a", "a GIF image"},
    Kind{"GIF89a", "a GIF image"},
    Kind{"II*\0", "a TIFF image"},
    Kind{"RIFF", "a WebP image, or another RIFF file"},
    Kind{"%!PS", "a PostScript document"},
    Kind{"PK\x03\x04", "a ZIP archive, as documents of offices are"},
    Kind{"\xD0\xCF\x11\xE0", "an office document"},
    Kind{"AC10", "a DWG drawing"},
};

bool StartsWith(std::string_view text, std::string_view lower) {
    return text.size() >= lower.size() &&
           std::equal(lower.begin(), lower.end(), text.begin(), [](char wanted, char given) {
               return wanted == (given >= 'A' && given <= 'Z' ? static_cast<char>(given - 'A' + 'a') : given);
           });
}

}  // namespace

bool IsHtml(std::string_view bytes) {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
    bytes.remove_prefix(std::min(bytes.find_first_not_of(" \t\r\n"), bytes.size()));
    return StartsWith(bytes, "<!doctype html") || StartsWith(bytes, "<html");
}

std::string_view DescribeForeignInput(std::string_view bytes) {
    for (const Kind& kind : kKinds)
        if (bytes.starts_with(kind.start)) return kind.name;
    return {};
}
