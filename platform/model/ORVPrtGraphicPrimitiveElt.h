// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <utility>

#include "platform/model/ORVPrtChildList.h"
#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVRef.h"
#include "platform/system/ORVSharedValue.h"
#include "platform/system/ORVSmallObjects.h"
#include "platform/system/ORVUnicodeString.h"

class ORVPrtPrimitiveBudget;

/// Identification of a primitive, and the budget that it was allocated from. Shared by all primitives without
/// texts.
struct ORV_PLATFORM_EXPORT ORVPrtIdentity {
    ORVPrtIdentity() = default;
    /// The copy refers to the same budget and adds a reference to it.
    ORVPrtIdentity(const ORVPrtIdentity& other);
    ORVPrtIdentity& operator=(const ORVPrtIdentity&) = delete;
    ~ORVPrtIdentity();

    /// Sets the budget and adds a reference to it; null for none.
    void SetBudget(ORVPrtPrimitiveBudget* newBudget);

    ORVUnicodeString id, description, title;  ///< UTF-8; may be empty
    ORVPrtPrimitiveBudget* budget = nullptr;  ///< holds a reference; null for none
};

/// Class of a primitive, for dispatch without comparing names. kOther is a class from another module.
enum class ORVPrtKind : std::uint8_t {
    kOther,
    kImage,
    kGroup,
    kSymbol,
    kPattern,
    kClosedFigure,
    kRegion,
    kRectangle,
    kCircle,
    kEllipse,
    kEllipticalArc,
    kLine,
    kPolyline,
    kPolygon,
    kPolyCubicBezier,
    kPolyQuadraticBezier,
    kText,
    kBitmapImage,
};

/// Base class of everything on a page. Coordinates are page units (1/90 inch) with y pointing up. Reference
/// counted; a new primitive has one reference, owned by its creator.
class ORV_PLATFORM_EXPORT ORVPrtGraphicPrimitiveElt : public ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass();

    /// Allocates with ORVSmallObjects. Throws std::bad_alloc.
    static void* operator new(std::size_t size) { return ORVSmallObjects::Take(size); }
    /// Returns null when out of memory.
    static void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
        return ORVSmallObjects::TryTake(size);
    }
    /// Frees the memory.
    static void operator delete(void* object, std::size_t size) { ORVSmallObjects::Give(object, size); }
    /// Frees the memory of an object whose constructor threw.
    static void operator delete(void* object, const std::nothrow_t& /*tag*/) noexcept {
        ORVSmallObjects::Give(object);
    }

    /// Class of the primitive.
    ORVPrtKind GetKind() const { return kind_; }

    /// Deep copy with one reference; null when out of memory or when the model's budget is exhausted. A
    /// shared child is copied for each of its occurrences. Does not recurse.
    virtual ORVPrtGraphicPrimitiveElt* Duplicate() const;

    /// Identifier in the document; empty for none.
    void SetID(ORVUnicodeString id) { identity_.Edit().id = std::move(id); }
    const ORVUnicodeString& GetID() const { return identity_.Get().id; }
    /// Description; empty for none.
    void SetDescription(ORVUnicodeString description) {
        identity_.Edit().description = std::move(description);
    }
    const ORVUnicodeString& GetDescription() const { return identity_.Get().description; }
    /// Title, used mainly for pages; empty for none.
    void SetTitle(ORVUnicodeString title) { identity_.Edit().title = std::move(title); }
    const ORVUnicodeString& GetTitle() const { return identity_.Get().title; }

    /// The children; null for classes without children.
    virtual const ORVPrtChildList* GetChildList() const { return nullptr; }

    /// Bytes of points and text that Duplicate copies.
    virtual std::size_t GetPayloadBytes() const { return 0; }

    /// The budget that this primitive and its duplicates are counted in; null for none.
    ORVPrtPrimitiveBudget* GetBudget() const { return identity_.Get().budget; }
    /// Replaces the identity, including the budget, by a shared one.
    void SetIdentity(const ORVSharedValue<ORVPrtIdentity>& identity) { identity_ = identity; }

    /// Mark for walks that must visit shared primitives only once; its value is meaningless between walks.
    std::uint32_t GetVisitMark() const { return visitMark_; }
    /// Sets the mark.
    void SetVisitMark(std::uint32_t mark) const { visitMark_ = mark; }

protected:
    /// @param kind  kind of the derived class
    explicit ORVPrtGraphicPrimitiveElt(ORVPrtKind kind) : kind_(kind) {}
    /// Copies everything except the identity, which Duplicate copies.
    ORVPrtGraphicPrimitiveElt(const ORVPrtGraphicPrimitiveElt& other)
        : ORVBaseObject(other), kind_(other.kind_) {}
    ~ORVPrtGraphicPrimitiveElt() override = default;

    /// Copies the object without its children and identity; null when out of memory.
    virtual ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const = 0;
    /// Appends a child during duplication. Called only for classes with children.
    virtual void AppendDuplicatedChild(ORVPrtGraphicPrimitiveElt& child);

private:
    ORVPrtGraphicPrimitiveElt* CopyNode() const;
    ORVPrtGraphicPrimitiveElt* CopyTree() const;

    mutable std::uint32_t visitMark_ = 0;  // first, to share a word with the reference count
    ORVSharedValue<ORVPrtIdentity> identity_;
    ORVPrtKind kind_;
};
