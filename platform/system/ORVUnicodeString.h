// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "platform/system/ORVBaseObject.h"

/// The platform's Unicode string. Holds UTF-8; positions and lengths of its operations count characters
/// (code points). It converts to a view of its bytes, which is how readers look at it.
class ORV_PLATFORM_EXPORT ORVUnicodeString {
public:
    /// Which way a search goes.
    enum Direction { kForward, kBackward };
    /// As a count: all that follows.
    static constexpr std::size_t kToEnd = static_cast<std::size_t>(-1);

    ORVUnicodeString() = default;
    /// @param utf8  not checked; null counts as empty
    ORVUnicodeString(const char* utf8) : text_(utf8 ? utf8 : "") {}
    /// Copies the bytes, unchecked.
    ORVUnicodeString(std::string_view utf8) : text_(utf8) {}
    /// Takes the bytes over, unchecked.
    ORVUnicodeString(std::string utf8) : text_(std::move(utf8)) {}

    /// The bytes; valid until the string changes.
    operator std::string_view() const { return text_; }
    /// The bytes; valid until the string changes.
    std::string_view GetView() const { return text_; }
    /// The bytes, ended by a zero; valid until the string changes.
    const char* ConvertToChar() const { return text_.c_str(); }
    /// Whether there is no character.
    bool IsEmpty() const { return text_.empty(); }

    /// Replaces the content by `size` bytes of UTF-8; a byte order mark at their start is dropped.
    /// @return 1, or -1 when the bytes are not well-formed UTF-8 (the string is then empty)
    int BuildFromUTF8(const char* bytes, std::size_t size);

    /// Number of characters (code points).
    std::size_t GetLengthInChar() const;
    /// 2 identical, 1 equal without regard to the case of ASCII letters, 0 otherwise.
    int Compare(std::string_view other) const;
    /// Position of `pattern`, searched from character `start`; -1 when it does not occur or is empty.
    /// Backward, the last occurrence that begins at or before `start` is found.
    long SearchSubString(std::string_view pattern, std::size_t start = 0,
                         Direction direction = kForward) const;
    /// At most `count` characters from character `start`.
    ORVUnicodeString GetSubString(std::size_t start, std::size_t count = kToEnd) const;
    /// Adds text at the end.
    void Append(std::string_view utf8) { text_.append(utf8); }
    /// Inserts text before a character; at the end when there are fewer.
    void Insert(std::size_t position, std::string_view utf8);
    /// Removes at most `count` characters from character `start`.
    void Remove(std::size_t start, std::size_t count = kToEnd);
    /// Replaces every occurrence of `pattern`, left to right, in linear time. An empty pattern does nothing.
    void ReplaceAll(std::string_view pattern, std::string_view replacement);

    /// Scanf-style conversions of one number; `format` is "%le", "%u" or "%d", as the type asks for.
    /// See number_conversion.h for what they accept. Any other format converts nothing.
    /// @return 1 converted, 0 no number, -1 nothing but white space
    int ConvertToNum(double* out, const char* format) const;
    /// See above; "%u".
    int ConvertToNum(unsigned int* out, const char* format) const;
    /// See above; "%d".
    int ConvertToNum(int* out, const char* format) const;

    /// Compares the bytes: what is normalised otherwise is another string.
    friend bool operator==(const ORVUnicodeString& a, const ORVUnicodeString& b) {
        return a.text_ == b.text_;
    }

private:
    std::size_t ByteOffset(std::size_t character, std::size_t from = 0) const;

    std::string text_;
};

/// True when `bytes` are well-formed UTF-8 (no overlong forms, no surrogates, nothing past U+10FFFF).
ORV_PLATFORM_EXPORT bool ORVIsWellFormedUTF8(std::string_view bytes);

/// Rewrites the decimal separator of `text` for number conversions. They always read a period, so nothing
/// has to change; the call stands where a locale-bound conversion would need it.
inline void GetStringWithLocalDecimalChar(ORVUnicodeString& /*text*/) {}
