// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <utility>

/// The platform's plain byte string: identifiers, file names in the file system's encoding.
class ORVString {
public:
    ORVString() = default;
    /// @param text  null counts as empty
    ORVString(const char* text) : text_(text ? text : "") {}
    /// Copies the bytes.
    ORVString(std::string_view text) : text_(text) {}
    /// Takes the bytes over.
    ORVString(std::string text) : text_(std::move(text)) {}

    /// The bytes; valid as long as the string.
    operator std::string_view() const { return text_; }
    /// The bytes, ended by a zero; valid as long as the string.
    const char* CastToCharPtr() const { return text_.c_str(); }
    /// Whether there is no byte.
    bool IsEmpty() const { return text_.empty(); }

    /// Compares the bytes.
    friend bool operator==(const ORVString& a, const ORVString& b) { return a.text_ == b.text_; }

private:
    std::string text_;
};
