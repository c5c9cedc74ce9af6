// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <utility>

/// Byte string for identifiers and for file names in the encoding of the file system.
class ORVString {
public:
    ORVString() = default;
    /// @param text  zero-terminated; null means empty
    ORVString(const char* text) : text_(text ? text : "") {}
    /// Copies the bytes.
    ORVString(std::string_view text) : text_(text) {}
    /// Takes over the bytes.
    ORVString(std::string text) : text_(std::move(text)) {}

    /// The bytes. Valid until the string is changed or destroyed.
    operator std::string_view() const { return text_; }
    /// The bytes with a terminating zero. Valid until the string is changed or destroyed.
    const char* CastToCharPtr() const { return text_.c_str(); }
    /// Whether the string has no bytes.
    bool IsEmpty() const { return text_.empty(); }

    /// Compares the bytes.
    friend bool operator==(const ORVString& a, const ORVString& b) { return a.text_ == b.text_; }

private:
    std::string text_;
};
