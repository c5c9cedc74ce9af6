// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "platform/system/ORVBaseObject.h"

/// Unicode string in UTF-8. Positions and lengths are in characters (code points) unless bytes are stated.
/// Converts implicitly to a view of its bytes.
class ORV_PLATFORM_EXPORT ORVUnicodeString {
public:
    /// Direction of a search.
    enum Direction { kForward, kBackward };
    /// As a count: everything up to the end.
    static constexpr std::size_t kToEnd = static_cast<std::size_t>(-1);

    ORVUnicodeString() = default;
    /// @param utf8  zero-terminated, not validated; null means empty
    ORVUnicodeString(const char* utf8) : text_(utf8 ? utf8 : "") {}
    /// Copies the bytes without validating them.
    ORVUnicodeString(std::string_view utf8) : text_(utf8) {}
    /// Takes over the bytes without validating them.
    ORVUnicodeString(std::string utf8) : text_(std::move(utf8)) {}

    /// The bytes; valid until the string changes.
    operator std::string_view() const { return text_; }
    /// The bytes; valid until the string changes.
    std::string_view GetView() const { return text_; }
    /// The bytes with a terminating zero. Valid until the string changes.
    const char* ConvertToChar() const { return text_.c_str(); }
    /// Whether the string is empty.
    bool IsEmpty() const { return text_.empty(); }

    /// Replaces the content with `size` bytes of UTF-8; a byte order mark at the start is dropped.
    /// @return 1, or -1 when the bytes are not well-formed UTF-8 (the string is then empty)
    int BuildFromUTF8(const char* bytes, std::size_t size);

    /// Number of characters (code points).
    std::size_t GetLengthInChar() const;
    /// Compares with another text. @return 2 identical, 1 equal except for the case of ASCII letters, 0
    /// otherwise
    int Compare(std::string_view other) const;
    /// Position of the first occurrence of `pattern` at or after character `start`; with kBackward, of the
    /// last one that begins at or before it. -1 when it does not occur or is empty.
    long SearchSubString(std::string_view pattern, std::size_t start = 0,
                         Direction direction = kForward) const;
    /// Substring of at most `count` characters from character `start`.
    ORVUnicodeString GetSubString(std::size_t start, std::size_t count = kToEnd) const;
    /// Appends text.
    void Append(std::string_view utf8) { text_.append(utf8); }
    /// Inserts text before the character at `position`; at the end when the string is shorter.
    void Insert(std::size_t position, std::string_view utf8);
    /// Removes up to `count` characters from character `start`.
    void Remove(std::size_t start, std::size_t count = kToEnd);
    /// Replaces every occurrence of `pattern`, left to right, in linear time. An empty pattern does nothing.
    void ReplaceAll(std::string_view pattern, std::string_view replacement);

    /// Scanf-style conversion of a number. `format` must be "%le", "%u" or "%d", matching the type of `out`;
    /// any other format converts nothing. See number_conversion.h for the syntax.
    /// @return 1 converted, 0 no number, -1 empty or only white space
    int ConvertToNum(double* out, const char* format) const;
    /// As above, with "%u".
    int ConvertToNum(unsigned int* out, const char* format) const;
    /// As above, with "%d".
    int ConvertToNum(int* out, const char* format) const;

    /// Compares bytes; texts that differ only in Unicode normalisation are different.
    friend bool operator==(const ORVUnicodeString& a, const ORVUnicodeString& b) {
        return a.text_ == b.text_;
    }

private:
    std::size_t ByteOffset(std::size_t character, std::size_t from = 0) const;

    std::string text_;
};

/// True when `bytes` are well-formed UTF-8 (no overlong forms, no surrogates, nothing past U+10FFFF).
ORV_PLATFORM_EXPORT bool ORVIsWellFormedUTF8(std::string_view bytes);

/// Does nothing: number conversions always use a period. It marks the places where a locale-dependent
/// conversion would need the local decimal separator.
inline void GetStringWithLocalDecimalChar(ORVUnicodeString& /*text*/) {}
