// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/xml/ORVXmlNode.h"
#include "platform/xml/ORVXmlPlace.h"

/// Tells where the reader stands. Costs nothing unless asked: the reader counts lines when it is
/// asked, from the place of the question before.
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
    /// For each of them, the AttributeName, or -1 when the name is not known.
    std::span<const std::int8_t> numbers;
    /// The attributes from this one on were not written but supplied from the document type. Their texts
    /// stay in place until the document has been read; all other views are gone when the event is over.
    std::size_t written;
    const XmlLocator* locator = nullptr;  ///< where the tag stands; null for one that was not read
};

/// What a document consists of, in document order. A sink may throw std::bad_alloc, nothing else.
class XmlEventSink {
public:
    virtual void StartElement(const XmlStartTag& tag) = 0;
    virtual void EndElement() = 0;
    /// Character data or CDATA; what stands together may come in many pieces.
    virtual void Text(std::string_view piece) = 0;
    /// A comment outside the document type.
    virtual void Comment(std::string_view data) = 0;

protected:
    ~XmlEventSink() = default;
};
