// SPDX-License-Identifier: Apache-2.0
#include "platform/print/link_addresses.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

constexpr std::array<std::string_view, 3> kScriptSchemes{"javascript", "vbscript", "data"};
constexpr std::size_t kLongestScheme = 10;
static_assert(std::all_of(kScriptSchemes.begin(), kScriptSchemes.end(),
                          [](std::string_view scheme) { return scheme.size() <= kLongestScheme; }));

char LowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

bool ORVIsScriptAddress(std::string_view address) {
    std::array<char, kLongestScheme> scheme{};
    std::size_t size = 0;
    for (const char c : address) {
        if (static_cast<unsigned char>(c) <= 0x20 || static_cast<unsigned char>(c) >= 0x7F) continue;
        if (c == ':')
            return std::find(kScriptSchemes.begin(), kScriptSchemes.end(),
                             std::string_view(scheme.data(), size)) != kScriptSchemes.end();
        if (c == '/' || c == '?' || c == '#' || size == scheme.size()) return false;
        scheme[size++] = LowerCase(c);
    }
    return false;
}
