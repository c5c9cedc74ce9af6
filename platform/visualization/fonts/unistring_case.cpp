// SPDX-License-Identifier: Apache-2.0

// The module liborvcase.so: letter case and words by libunistring.

#include <unicase.h>
#include <unictype.h>
#include <unistr.h>
#include <uniwbrk.h>

#include <cstdint>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/visualization/fonts/letter_case.h"

namespace {

const std::uint8_t* BytesOf(std::string_view text) {
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

/// The primary language of a tag, in lower case; empty unless it has two letters. The library compares only
/// these.
std::string PrimaryOf(std::string_view tag) {
    std::string primary(tag.substr(0, tag.find('-')));
    if (primary.size() != 2) return {};
    for (char& c : primary)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return primary;
}

using Mapping = decltype(&u8_ct_toupper);

/// Appends a text in another case.
/// @return false if out of memory
bool Append(Mapping mapping, std::string_view text, std::string_view before, const std::string& language,
            std::string& mapped) {
    struct Freed {
        void operator()(std::uint8_t* bytes) const { std::free(bytes); }
    };
    if (text.empty()) return true;
    std::size_t size = 0;
    const std::unique_ptr<std::uint8_t, Freed> bytes(
        mapping(BytesOf(text), text.size(), u8_casing_prefix_context(BytesOf(before), before.size()),
                u8_casing_suffix_context(nullptr, 0), language.c_str(), nullptr, nullptr, &size));
    if (!bytes) return false;
    mapped.append(reinterpret_cast<const char*>(bytes.get()), size);
    return true;
}

bool AppendWithWordStarts(std::string_view text, std::string_view before, const std::string& language,
                          std::string& mapped) {
    const std::string all = std::string(before) + std::string(text);
    std::vector<char> startsWord(all.size());
    u8_wordbreaks(BytesOf(all), all.size(), startsWord.data());
    bool isFirst = true;  // before the first letter or digit of a word
    for (std::size_t i = 0; i < all.size();) {
        ucs4_t code = 0;
        const int size = u8_mbtouc(&code, BytesOf(all) + i, all.size() - i);
        const std::string_view character = std::string_view(all).substr(i, static_cast<std::size_t>(size));
        isFirst = isFirst || startsWord[i] != 0;
        const bool isLetter = uc_is_general_category_withtable(code, UC_CATEGORY_MASK_L) ||
                              uc_is_general_category_withtable(code, UC_CATEGORY_MASK_N);
        if (i >= before.size()) {
            if (!isFirst || !isLetter)
                mapped += character;
            else if (!Append(u8_ct_totitle, character, {}, language, mapped))
                return false;
        }
        isFirst = isFirst && !isLetter;
        i += character.size();
    }
    return true;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) bool orvChangeCase(std::string_view text,
                                                                     ORVLetterCase letterCase,
                                                                     std::string_view before,
                                                                     std::string_view language,
                                                                     std::string& mapped) {
    try {
        const std::string primary = PrimaryOf(language);
        mapped.clear();
        mapped.reserve(text.size());
        switch (letterCase) {
            case ORVLetterCase::kUpper: return Append(u8_ct_toupper, text, before, primary, mapped);
            case ORVLetterCase::kLower: return Append(u8_ct_tolower, text, before, primary, mapped);
            case ORVLetterCase::kWordStarts: return AppendWithWordStarts(text, before, primary, mapped);
        }
    } catch (const std::exception&) {
    }
    return false;
}
static_assert(std::is_same_v<decltype(&orvChangeCase), ORVCaseChanger>);
