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

/// Where a walk over an element's children stands: at the child that GetChild() returns next. Null when
/// there is none (any more).
using ORVLightXmlChildHandle = const ORVXmlNode*;

/// An element of the light parser: elements only, no other nodes. A null element has no name, no attributes
/// and no children.
class ORV_PLATFORM_EXPORT ORVLightXmlElementItf {
public:
    virtual ~ORVLightXmlElementItf() = default;

    /// The element in its tree; null for a null element. Valid as long as the tree is.
    virtual const ORVXmlNode* GetNode() const = 0;
    /// The tree that owns the element; null for a null element.
    virtual ORVRef<const ORVXmlTree> GetTree() const = 0;

    /// Tag name as written, with its prefix.
    ORVUnicodeString GetName() const;
    /// Value of the attribute of that exact name; empty when it is absent.
    ORVUnicodeString GetAttributeValue(std::string_view name) const;
    /// The element's own character data, joined; nothing of its descendants.
    ORVUnicodeString GetValue() const;

    /// Starts a walk over the children, in document order.
    ORVLightXmlChildHandle GetChildren() const;
    /// The next child of the walk; moves the handle on. A null handle gives a null element.
    ORVLightXmlElement GetChild(ORVLightXmlChildHandle& handle) const;
};

/// An element that keeps its tree alive. Copying one costs a reference count, since trees never change;
/// Assign makes a tree of its own.
class ORV_PLATFORM_EXPORT ORVLightXmlElement : public ORVLightXmlElementItf {
public:
    ORVLightXmlElement() = default;
    /// @param node  an element of `tree`
    ORVLightXmlElement(ORVRef<const ORVXmlTree> tree, const ORVXmlNode* node);

    const ORVXmlNode* GetNode() const override { return node_; }
    ORVRef<const ORVXmlTree> GetTree() const override { return tree_; }

    /// Becomes a deep copy of `other` (an element and what is below it, without its siblings), which shares
    /// nothing with it; of a null element, a null element.
    /// @return 1, or 0 when out of memory (this element is then unchanged)
    int Assign(const ORVLightXmlElementItf& other);

private:
    ORVRef<const ORVXmlTree> tree_;
    const ORVXmlNode* node_ = nullptr;
};

/// Bytes to parse. They are not copied.
class ORVLightXmlInputStreamBuffer {
public:
    /// How long the caller keeps the bytes in place.
    enum class Lifetime { kParsing, kElements };

    /// @param lifetime  kParsing: until they have been parsed; kElements: as long as any element that comes
    ///                  of them, which then refers to them, and takes less memory
    /// @param reading   of the elements; with kOnce, bytes that stay in place are lost as they are read
    ORVLightXmlInputStreamBuffer(const char* bytes, std::size_t size, Lifetime lifetime = Lifetime::kParsing,
                                 ORVXmlReading reading = ORVXmlReading::kAny)
        : bytes_(bytes, bytes ? size : 0),
          staysInPlace_(lifetime == Lifetime::kElements),
          reading_(reading) {}
    /// Bytes that an owner keeps in place, and the elements the owner.
    ORVLightXmlInputStreamBuffer(std::shared_ptr<const void> owner, std::string_view bytes,
                                 ORVXmlReading reading = ORVXmlReading::kAny)
        : owner_(std::move(owner)), bytes_(bytes), staysInPlace_(true), reading_(reading) {}

    /// The bytes to parse.
    std::string_view GetBytes() const { return bytes_; }
    /// Whether elements may refer to the bytes.
    bool StayInPlace() const { return staysInPlace_; }
    /// What keeps the bytes; null when the caller does.
    const std::shared_ptr<const void>& GetOwner() const { return owner_; }
    /// How often values are going to be read.
    ORVXmlReading GetReading() const { return reading_; }

private:
    std::shared_ptr<const void> owner_;
    std::string_view bytes_;
    bool staysInPlace_;
    ORVXmlReading reading_;
};

/// Parses documents into light elements. Honours the encoding that a document declares.
class ORV_PLATFORM_EXPORT ORVLightXmlParser {
public:
    /// @param element  out: the root element with everything up to the first error, the text before the
    ///                 error included; a null element when the document broke off before its root
    /// @param places   out, if not null: the place of every element of the tree, in document order
    /// @return 1 when the document is well formed, -1 when it is not (see GetError)
    int Parse(const ORVLightXmlInputStreamBuffer& stream, ORVLightXmlElement& element,
              std::vector<ORVXmlPlace>* places = nullptr);

    /// What was wrong with the document parsed last; an empty message when nothing was.
    const ORVXmlError& GetError() const { return error_; }

private:
    ORVXmlError error_;
};
