// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system/ORVRef.h"
#include "platform/system/ORVUnicodeString.h"
#include "platform/xml/ORVXmlError.h"
#include "platform/xml/ORVXmlNode.h"
#include "platform/xml/ORVXmlPlace.h"
#include "platform/xml/ORVXmlTree.h"

class ORVLightXmlElement;

/// Position of an iteration over an element's children: the child that GetChild() will return next. Null at
/// the end.
using ORVLightXmlChildHandle = const ORVXmlNode*;

/// An element of the light parser, whose trees contain only elements. A null element has no name, attributes
/// or children.
class ORV_PLATFORM_EXPORT ORVLightXmlElementItf {
public:
    virtual ~ORVLightXmlElementItf() = default;

    /// The node in the tree; null for a null element. Valid as long as the tree.
    virtual const ORVXmlNode* GetNode() const = 0;
    /// The tree that owns the element; null for a null element.
    virtual ORVRef<const ORVXmlTree> GetTree() const = 0;

    /// Tag name as written, including a prefix.
    ORVUnicodeString GetName() const;
    /// Value of the attribute with exactly that name; empty when it is absent.
    ORVUnicodeString GetAttributeValue(std::string_view name) const;
    /// Character data of the element, joined, without that of its descendants.
    ORVUnicodeString GetValue() const;

    /// Starts an iteration over the children in document order.
    ORVLightXmlChildHandle GetChildren() const;
    /// Returns the next child and advances the handle; a null element at the end.
    ORVLightXmlElement GetChild(ORVLightXmlChildHandle& handle) const;
};

/// An element that keeps its tree alive. Copying increments a reference count, since trees are immutable;
/// Assign copies the tree.
class ORV_PLATFORM_EXPORT ORVLightXmlElement : public ORVLightXmlElementItf {
public:
    ORVLightXmlElement() = default;
    /// @param node  an element of `tree`
    ORVLightXmlElement(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* node);

    const ORVXmlNode* GetNode() const override { return node_; }
    ORVRef<const ORVXmlTree> GetTree() const override { return tree_; }

    /// Makes this element a deep copy of `other` and its descendants, in a new tree. The copy of a null
    /// element is a null element.
    /// @return 1, or 0 when out of memory (this element is then unchanged)
    int Assign(const ORVLightXmlElementItf& other);

private:
    ORVRef<const ORVXmlTree> tree_;
    const ORVXmlNode* node_ = nullptr;
};

/// Bytes to parse. They are not copied.
class ORVLightXmlInputStreamBuffer {
public:
    /// How long the bytes stay valid.
    enum class Lifetime { kParsing, kElements };

    /// @param lifetime  kParsing: until they have been parsed; kElements: as long as any element parsed from
    /// them, so that elements refer to the bytes and need less memory
    /// @param reading   how often attributes of the elements will be read; with kOnce and kElements, the
    /// bytes are discarded as they are read
    ORVLightXmlInputStreamBuffer(const char* bytes, std::size_t size, Lifetime lifetime = Lifetime::kParsing,
                                 ORVXmlReading reading = ORVXmlReading::kAny)
        : bytes_(bytes, bytes ? size : 0),
          staysInPlace_(lifetime == Lifetime::kElements),
          reading_(reading) {}
    /// Bytes that are kept alive by `owner`, which the elements share.
    ORVLightXmlInputStreamBuffer(std::shared_ptr<const void> owner, std::string_view bytes,
                                 ORVXmlReading reading = ORVXmlReading::kAny)
        : owner_(std::move(owner)), bytes_(bytes), staysInPlace_(true), reading_(reading) {}

    /// The bytes to parse.
    std::string_view GetBytes() const { return bytes_; }
    /// Whether elements may refer to the bytes.
    bool StayInPlace() const { return staysInPlace_; }
    /// Owner of the bytes; null when the caller keeps them valid.
    const std::shared_ptr<const void>& GetOwner() const { return owner_; }
    /// How often attribute values will be read.
    ORVXmlReading GetReading() const { return reading_; }

private:
    std::shared_ptr<const void> owner_;
    std::string_view bytes_;
    bool staysInPlace_;
    ORVXmlReading reading_;
};

/// Parses documents into light elements, in their declared encoding.
class ORV_PLATFORM_EXPORT ORVLightXmlParser {
public:
    /// @param element  out: the root element with everything before the first error, including text; a null
    /// element when the error is before the root
    /// @param places   out, may be null: the position of every element, in document order
    /// @return 1 when the document is well formed, else -1 (see GetError)
    int Parse(const ORVLightXmlInputStreamBuffer& stream, ORVLightXmlElement& element,
              std::vector<ORVXmlPlace>* places = nullptr);

    /// The error in the document parsed last; its message is empty when there was none.
    const ORVXmlError& GetError() const { return error_; }

private:
    ORVXmlError error_;
};
