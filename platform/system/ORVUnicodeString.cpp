// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVUnicodeString.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "platform/system/number_conversion.h"

namespace {

bool StartsCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }

bool IsContinuation(unsigned char byte) { return (byte & 0xC0U) == 0x80U; }

std::size_t CountCharacters(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), StartsCharacter));
}

// Length of the well-formed UTF-8 sequence at the start of `s`; 0 when there is none.
std::size_t SequenceLength(const unsigned char* s, std::size_t left) {
    const unsigned char lead = s[0];
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xF4) return 0;
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (left < length) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if (!IsContinuation(s[i])) return 0;
    if (lead == 0xE0 && s[1] < 0xA0) return 0;  // overlong
    if (lead == 0xED && s[1] > 0x9F) return 0;  // surrogate
    if (lead == 0xF0 && s[1] < 0x90) return 0;  // overlong
    if (lead == 0xF4 && s[1] > 0x8F) return 0;  // past U+10FFFF
    return length;
}

}  // namespace

bool ORVIsWellFormedUTF8(std::string_view bytes) {
    const auto* s = reinterpret_cast<const unsigned char*>(bytes.data());
    std::size_t left = bytes.size();
    while (left > 0) {
        if (left >= 8) {  // eight ASCII bytes at a time
            std::uint64_t block = 0;
            std::memcpy(&block, s, sizeof block);
            if ((block & 0x8080808080808080U) == 0) {
                s += 8;
                left -= 8;
                continue;
            }
        }
        const std::size_t length = SequenceLength(s, left);
        if (length == 0) return false;
        s += length;
        left -= length;
    }
    return true;
}

int ORVUnicodeString::BuildFromUTF8(const char* bytes, std::size_t size) {
    text_.clear();
    std::string_view view(bytes, bytes ? size : 0);
    if (view.starts_with("\xEF\xBB\xBF")) view.remove_prefix(3);
    if (!ORVIsWellFormedUTF8(view)) return -1;
    text_.assign(view);
    return 1;
}

std::size_t ORVUnicodeString::GetLengthInChar() const { return CountCharacters(text_); }

int ORVUnicodeString::Compare(std::string_view other) const { return ORVCompareText(text_, other); }

std::size_t ORVUnicodeString::ByteOffset(std::size_t character, std::size_t from) const {
    std::size_t offset = from;
    while (character > 0 && offset < text_.size()) {
        ++offset;
        while (offset < text_.size() && !StartsCharacter(text_[offset])) ++offset;
        --character;
    }
    return offset;
}

long ORVUnicodeString::SearchSubString(std::string_view pattern, std::size_t start,
                                       Direction direction) const {
    if (pattern.empty()) return -1;
    const std::size_t from = ByteOffset(start);
    const std::size_t found = direction == kForward ? text_.find(pattern, from) : text_.rfind(pattern, from);
    if (found == std::string::npos) return -1;
    return static_cast<long>(CountCharacters(std::string_view(text_).substr(0, found)));
}

ORVUnicodeString ORVUnicodeString::GetSubString(std::size_t start, std::size_t count) const {
    const std::size_t begin = ByteOffset(start);
    const std::size_t end = count == kToEnd ? text_.size() : ByteOffset(count, begin);
    return std::string_view(text_).substr(begin, end - begin);
}

void ORVUnicodeString::Insert(std::size_t position, std::string_view utf8) {
    text_.insert(ByteOffset(position), utf8);
}

void ORVUnicodeString::Remove(std::size_t start, std::size_t count) {
    const std::size_t begin = ByteOffset(start);
    const std::size_t end = count == kToEnd ? text_.size() : ByteOffset(count, begin);
    text_.erase(begin, end - begin);
}

void ORVUnicodeString::ReplaceAll(std::string_view pattern, std::string_view replacement) {
    if (pattern.empty()) return;
    std::size_t found = text_.find(pattern);
    if (found == std::string::npos) return;

    std::string result;
    std::size_t copied = 0;
    while (found != std::string::npos) {
        result.append(text_, copied, found - copied).append(replacement);
        copied = found + pattern.size();
        found = text_.find(pattern, copied);
    }
    result.append(text_, copied);
    text_ = std::move(result);
}

int ORVUnicodeString::ConvertToNum(double* out, const char* format) const {
    return std::string_view(format) == "%le" ? ORVConvertToDouble(text_, *out) : 0;
}

int ORVUnicodeString::ConvertToNum(unsigned int* out, const char* format) const {
    return std::string_view(format) == "%u" ? ORVConvertToUnsigned(text_, *out) : 0;
}

int ORVUnicodeString::ConvertToNum(int* out, const char* format) const {
    return std::string_view(format) == "%d" ? ORVConvertToInt(text_, *out) : 0;
}
