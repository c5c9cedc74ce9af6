// SPDX-License-Identifier: Apache-2.0
#include "library/dump/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>

#include "library/text/printable_text.h"

namespace {

constexpr std::size_t kBufferSize = 1U << 16U;
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Escapes a character as in "\u202e"; one above U+FFFF becomes a surrogate pair.
std::string Escape(char32_t character) {
    constexpr char kDigits[] = "0123456789abcdef";
    if (character >= 0x10000) {
        const char32_t rest = character - 0x10000;
        return Escape(0xD800 + (rest >> 10U)) + Escape(0xDC00 + (rest & 0x3FFU));
    }
    std::string escape = "\\u";
    for (unsigned int shift = 16; shift > 0; shift -= 4) escape += kDigits[(character >> (shift - 4)) & 15U];
    return escape;
}

}  // namespace

void JsonWriter::Put(std::string_view text) {
    if (text_) {
        text_->append(text);
        return;
    }
    buffer_ += text;
    if (buffer_.size() >= kBufferSize) Flush();
}

bool JsonWriter::Flush() {
    if (text_) return true;
    if (!buffer_.empty() && std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size())
        failed_ = true;
    buffer_.clear();
    if (std::fflush(file_) != 0) failed_ = true;
    return !failed_;
}

void JsonWriter::Separate() {
    if (needsComma_) Put(",");
    needsComma_ = true;
}

void JsonWriter::Open(char bracket) {
    Separate();
    Put({&bracket, 1});
    needsComma_ = false;
}

void JsonWriter::Close(char bracket) {
    Put({&bracket, 1});
    needsComma_ = true;
}

void JsonWriter::Key(std::string_view name) {
    Text(name);
    Put(":");
    needsComma_ = false;
}

void JsonWriter::Number(double number) {
    if (!std::isfinite(number)) return Null();
    std::array<char, 32> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
    Separate();
    Put({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

void JsonWriter::Integer(long long number) {
    Separate();
    Put(std::to_string(number));
}

void JsonWriter::Null() {
    Separate();
    Put("null");
}

void JsonWriter::Flag(bool flag) {
    Separate();
    Put(flag ? "true" : "false");
}

void JsonWriter::Text(std::string_view utf8) {
    Separate();
    Put("\"");
    std::size_t plain = 0;  // start of the text not written yet
    const auto replace = [&](std::size_t at, std::size_t length, std::string_view by) {
        Put(utf8.substr(plain, at - plain));
        Put(by);
        plain = at + length;
    };
    for (std::size_t i = 0; i < utf8.size();) {
        const char c = utf8[i];
        std::size_t length = 1;
        if (c == '"' || c == '\\') {
            const char escaped[] = {'\\', c};
            replace(i, 1, {escaped, 2});
        } else if (isInMarkup_ && (c == '<' || c == '>' || c == '&')) {
            replace(i, 1, Escape(static_cast<char32_t>(c)));
        } else if (static_cast<unsigned char>(c - 0x20) >= 0x5F) {  // DEL or not ASCII
            char32_t character = 0;
            if (!FirstCharacter(utf8.substr(i), character, length))
                replace(i, length, kReplacement);
            else if (!IsPrintable(character))
                replace(i, length, Escape(character));
        }
        i += length;
    }
    Put(utf8.substr(plain));
    Put("\"");
}
