// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Writes JSON incrementally, to a file through a small buffer or to a string. Commas are inserted
/// automatically; otherwise the caller is responsible for the structure.
class JsonWriter {
public:
    /// @param isInMarkup  the text is embedded in HTML: characters that start markup are escaped
    explicit JsonWriter(std::FILE* file, bool isInMarkup = false) : file_(file), isInMarkup_(isInMarkup) {}
    /// @param text  the output is appended to it; must outlive this object
    explicit JsonWriter(std::string& text) : text_(&text) {}
    ~JsonWriter() { Flush(); }
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }
    /// Begins a member; its value must follow.
    void Key(std::string_view name);

    void Number(double number);  ///< the shortest form that reads back as the same number; null if not finite
    void Integer(long long number);
    void Text(std::string_view utf8);  ///< invalid UTF-8 becomes U+FFFD, and characters that are not
                                       ///< IsPrintable are escaped
    void Null();
    void Flag(bool flag);
    void LineBreak() { Put("\n"); }

    /// Writes the buffer to the file.
    /// @return false if a write failed
    bool Flush();

private:
    void Separate();
    void Open(char bracket);
    void Close(char bracket);
    void Put(std::string_view text);

    std::FILE* file_ = nullptr;  // one of the two is set
    std::string* text_ = nullptr;
    const bool isInMarkup_ = false;
    std::string buffer_;
    bool needsComma_ = false;
    bool failed_ = false;
};
