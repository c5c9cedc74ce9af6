// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

/// Writes JSON piece by piece, to a file through a small buffer. The caller keeps the grammar, but for
/// commas: they come by themselves between members and elements.
class JsonWriter {
public:
    /// @param isInMarkup  the text will stand within HTML: what begins markup is escaped
    explicit JsonWriter(std::FILE* file, bool isInMarkup = false) : file_(file), isInMarkup_(isInMarkup) {}
    /// @param text  gets what is written, behind what it holds; must outlive this object
    explicit JsonWriter(std::string& text) : text_(&text) {}
    ~JsonWriter() { Flush(); }
    JsonWriter(const JsonWriter&) = delete;
    JsonWriter& operator=(const JsonWriter&) = delete;

    void BeginObject() { Open('{'); }
    void EndObject() { Close('}'); }
    void BeginArray() { Open('['); }
    void EndArray() { Close(']'); }
    /// Begins a member; its value follows.
    void Key(std::string_view name);

    void Number(double number);  ///< the shortest digits that read back the same; null when not finite
    void Integer(long long number);
    void Text(std::string_view
                  utf8);  ///< what is no UTF-8 becomes U+FFFD; JSON may come to a terminal: see IsPrintable
    void Null();
    void Flag(bool flag);
    void LineBreak() { Put("\n"); }

    /// Hands everything to the file. @return false when the file did not take it all
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
