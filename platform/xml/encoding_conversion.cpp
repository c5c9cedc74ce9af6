// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/encoding_conversion.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace {

const iconv_t kNoConverter = reinterpret_cast<iconv_t>(-1);
constexpr std::size_t kFailed = static_cast<std::size_t>(-1);

// A "/" in an encoding name starts iconv options such as transliteration, which documents must not set.
bool IsPlainName(const std::string& name) { return !name.empty() && name.find('/') == std::string::npos; }

}  // namespace

EncodingConversion::EncodingConversion(const std::string& encoding)
    : converter_(IsPlainName(encoding) ? iconv_open("UTF-8", encoding.c_str()) : kNoConverter) {}

EncodingConversion::~EncodingConversion() {
    if (IsKnown()) iconv_close(converter_);
}

bool EncodingConversion::IsKnown() const { return converter_ != kNoConverter; }

bool EncodingConversion::ConvertToUtf8(std::string_view bytes, std::string& text) {
    iconv(converter_, nullptr, nullptr, nullptr, nullptr);
    text.clear();
    char* in = const_cast<char*>(bytes.data());  // iconv does not write to it
    std::size_t inLeft = bytes.size();
    std::size_t used = 0;
    bool flushing = false;  // a stateful encoding may hold back a character until flushed
    while (true) {
        text.resize(std::max(text.size(), used + inLeft + inLeft / 2 + 64));
        char* out = text.data() + used;
        std::size_t outLeft = text.size() - used;
        const std::size_t result =
            iconv(converter_, flushing ? nullptr : &in, flushing ? nullptr : &inLeft, &out, &outLeft);
        const int reason = errno;
        used = text.size() - outLeft;
        if (result != kFailed) {
            if (flushing) break;
            flushing = true;
        } else if (reason != E2BIG) {
            text.resize(used);
            return false;
        }
    }
    text.resize(used);
    return true;
}

std::uint64_t EncodingConversion::FindSourceOffset(std::string_view bytes, std::uint64_t utf8Bytes) {
    iconv(converter_, nullptr, nullptr, nullptr, nullptr);
    char* in = const_cast<char*>(bytes.data());
    std::size_t inLeft = bytes.size();
    std::array<char, 4096> scratch;
    while (utf8Bytes > 0) {
        char* out = scratch.data();
        const std::size_t room = static_cast<std::size_t>(std::min<std::uint64_t>(scratch.size(), utf8Bytes));
        std::size_t outLeft = room;
        const std::size_t result = iconv(converter_, &in, &inLeft, &out, &outLeft);
        const std::size_t written = room - outLeft;
        utf8Bytes -= written;
        if (result != kFailed || errno != E2BIG || written == 0) break;
    }
    return bytes.size() - inLeft;
}
