// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/xml/ORVXmlNode.h"
#include "platform/xml/ORVXmlPlace.h"

/// Reports the current position of the parser. Lines are counted only on request, starting from the previous
/// request.
class XmlLocator {
public:
    virtual ORVXmlPlace Locate() const = 0;

protected:
    ~XmlLocator() = default;
};

/// A start tag as the reader reports it.
struct XmlStartTag {
    std::string_view name;
    std::span<const ORVXmlAttribute> attributes;
    /// For each attribute, its AttributeName, or -1 when the name is not known.
    std::span<const std::int8_t> numbers;
    /// Number of attributes that were written; the rest were supplied from the document type. Texts of the
    /// latter stay valid until the document has been read; all other views are valid only during the event.
    std::size_t written;
    const XmlLocator* locator = nullptr;  ///< position of the tag; null when it was not read from a document
};

/// Receives the content of a document in document order. Functions may throw std::bad_alloc and nothing else.
class XmlEventSink {
public:
    virtual void StartElement(const XmlStartTag& tag) = 0;
    virtual void EndElement() = 0;
    /// Character data or CDATA. Contiguous text may be reported in several pieces.
    virtual void Text(std::string_view piece) = 0;
    /// A comment outside the document type declaration.
    virtual void Comment(std::string_view data) = 0;

protected:
    ~XmlEventSink() = default;
};
