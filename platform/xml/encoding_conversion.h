// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iconv.h>

#include <cstdint>
#include <string>
#include <string_view>

/// Converts documents to UTF-8 from an encoding supported by iconv.
class EncodingConversion {
public:
    /// @param encoding  name as declared by the document
    explicit EncodingConversion(const std::string& encoding);
    ~EncodingConversion();
    EncodingConversion(const EncodingConversion&) = delete;
    EncodingConversion& operator=(const EncodingConversion&) = delete;

    /// False when the system does not support the encoding; nothing can be converted then.
    bool IsKnown() const;

    /// Converts bytes. Throws std::bad_alloc.
    /// @param text  out: UTF-8, up to the first invalid bytes
    /// @return true when all of `bytes` were converted
    [[nodiscard]] bool ConvertToUtf8(std::string_view bytes, std::string& text);

    /// Number of source bytes that convert to the first `utf8Bytes` bytes of UTF-8.
    std::uint64_t FindSourceOffset(std::string_view bytes, std::uint64_t utf8Bytes);

private:
    iconv_t converter_;
};
