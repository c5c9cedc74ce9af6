#pragma once

#include <string>
#include <string_view>
#include <utility>

/// The platform's plain byte string: identifiers, file names in the file system's encoding.
class ORVString {
public:
    ORVString() = default;
    ORVString(const char* text) : text_(text ? text : "") {}
    ORVString(std::string_view text) : text_(text) {}
    ORVString(std::string text) : text_(std::move(text)) {}

    operator std::string_view() const { return text_; }
    const char* CastToCharPtr() const { return text_.c_str(); }
    bool IsEmpty() const { return text_.empty(); }

    friend bool operator==(const ORVString& a, const ORVString& b) { return a.text_ == b.text_; }

private:
    std::string text_;
};
