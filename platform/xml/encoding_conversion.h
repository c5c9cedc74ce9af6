// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <iconv.h>

#include <cstdint>
#include <string>
#include <string_view>

/// Converts documents from an encoding of the system's tables to UTF-8.
class EncodingConversion {
public:
    /// @param encoding  its name as a document declares it
    explicit EncodingConversion(const std::string& encoding);
    ~EncodingConversion();
    EncodingConversion(const EncodingConversion&) = delete;
    EncodingConversion& operator=(const EncodingConversion&) = delete;

    /// False when the system has no such encoding; nothing can then be converted.
    bool IsKnown() const;

    /// @param text  out: UTF-8, up to the first bytes that are no character. Throws std::bad_alloc.
    /// @return true when all of `bytes` were converted
    [[nodiscard]] bool ConvertToUtf8(std::string_view bytes, std::string& text);

    /// Number of source bytes that make up the first `utf8Bytes` bytes of their conversion.
    std::uint64_t FindSourceOffset(std::string_view bytes, std::uint64_t utf8Bytes);

private:
    iconv_t converter_;
};
