// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/xml/plain_document.h"
#include "platform/xml/xml_reader.h"

/// Records events as text for comparison. Adjacent pieces of text are merged.
class EventText final : public XmlEventSink {
public:
    const std::string& Get() const { return text_; }

    void StartElement(const XmlStartTag& tag) override {
        Begin('<');
        text_ += tag.name;
        for (std::size_t i = 0; i < tag.attributes.size(); ++i) {
            const ORVXmlAttribute& attribute = tag.attributes[i];
            text_ += ' ';
            text_.append(attribute.name).append("=").append(Length(attribute.value)).append(attribute.value);
            text_ += i < tag.written ? "" : "(supplied)";
            text_ += std::to_string(tag.numbers[i]);
        }
        text_ += '>';
    }
    void EndElement() override { Begin('/'); }
    void Text(std::string_view piece) override {
        if (piece.empty()) return;
        if (!inText_) Begin('\'');
        inText_ = true;
        text_ += piece;
    }
    void Comment(std::string_view data) override {
        Begin('!');
        text_.append(Length(data)).append(data);
    }

private:
    // Lengths precede contents, so that different events never produce the same text.
    static std::string Length(std::string_view content) { return std::to_string(content.size()) + ":"; }
    void Begin(char kind) {
        inText_ = false;
        text_ += '\n';
        text_ += kind;
    }

    std::string text_;
    bool inText_ = false;
};

/// The events of the conforming parser; empty if the document is not well-formed.
inline std::optional<std::string> ConformingEvents(std::string_view document,
                                                   XmlEncoding encoding = XmlEncoding::kDeclared) {
    EventText events;
    ORVXmlError error;
    if (!ReadXml(document, encoding, events, error)) return std::nullopt;
    return events.Get();
}

/// The events of the fast reader for plain documents; empty if it rejects the document.
inline std::optional<std::string> PlainEvents(std::string_view document,
                                              XmlEncoding encoding = XmlEncoding::kDeclared) {
    EventText events;
    if (!ReadPlainDocument(document, encoding, events)) return std::nullopt;
    return events.Get();
}
