#include "apps/orvprint/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>

#include "platform/system/ORVUnicodeString.h"

namespace {

constexpr std::size_t kBufferSize = 1U << 16U;
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Length of the character at the start of `text` in bytes; 0 when it is no character.
std::size_t CharacterLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    return length <= text.size() && ORVIsWellFormedUTF8(text.substr(0, length)) ? length : 0;
}

}  // namespace

void JsonWriter::Put(std::string_view text) {
    buffer_ += text;
    if (buffer_.size() >= kBufferSize) Flush();
}

bool JsonWriter::Flush() {
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
    std::size_t plain = 0;  // start of what needs no change
    const auto replace = [&](std::size_t at, std::size_t length, std::string_view by) {
        Put(utf8.substr(plain, at - plain));
        Put(by);
        plain = at + length;
    };
    for (std::size_t i = 0; i < utf8.size();) {
        const char c = utf8[i];
        const auto byte = static_cast<unsigned char>(c);
        std::size_t length = 1;
        if (c == '"' || c == '\\') {
            const char escaped[] = {'\\', c};
            replace(i, 1, {escaped, 2});
        } else if (byte < 0x20 || byte == 0x7F) {
            constexpr char kDigits[] = "0123456789abcdef";
            const char escaped[] = {'\\', 'u', '0', '0', kDigits[byte >> 4U], kDigits[byte & 15U]};
            replace(i, 1, {escaped, 6});
        } else if (byte >= 0x80) {
            length = CharacterLength(utf8.substr(i));
            if (length == 0) {
                length = 1;
                replace(i, 1, kReplacement);
            }
        }
        i += length;
    }
    Put(utf8.substr(plain));
    Put("\"");
}
