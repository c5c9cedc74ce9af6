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

/// What tells primitives apart, and the budget they were taken from. Most of a model's share one of these.
struct ORV_PLATFORM_EXPORT ORVPrtIdentity {
    ORVPrtIdentity() = default;
    /// References the same budget.
    ORVPrtIdentity(const ORVPrtIdentity& other);
    ORVPrtIdentity& operator=(const ORVPrtIdentity&) = delete;
    ~ORVPrtIdentity();

    /// References the budget; null for none.
    void SetBudget(ORVPrtPrimitiveBudget* newBudget);

    ORVUnicodeString id, description, title;  ///< UTF-8, each perhaps empty
    ORVPrtPrimitiveBudget* budget = nullptr;  ///< referenced; null for none
};

/// The model's own classes, for dispatch without comparing names. A class of another module is kOther.
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

/// Base of everything that stands on a page. Coordinates are page units (1/90 inch), y pointing up.
/// Reference counted; a new primitive has one reference, which its creator releases.
class ORV_PLATFORM_EXPORT ORVPrtGraphicPrimitiveElt : public ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass();

    /// Primitives are ORVSmallObjects.
    static void* operator new(std::size_t size) { return ORVSmallObjects::Take(size); }
    /// The same; null when there is no memory.
    static void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
        return ORVSmallObjects::TryTake(size);
    }
    /// Gives the memory back.
    static void operator delete(void* object, std::size_t size) { ORVSmallObjects::Give(object, size); }
    /// The same for an object whose constructor threw.
    static void operator delete(void* object, const std::nothrow_t& /*tag*/) noexcept {
        ORVSmallObjects::Give(object);
    }

    /// The class, as a number.
    ORVPrtKind GetKind() const { return kind_; }

    /// Deep copy with one reference; null when out of memory or over the model's budget. Shared children are
    /// copied once for each place they stand in. Does not recurse.
    virtual ORVPrtGraphicPrimitiveElt* Duplicate() const;

    /// Identifier in the document; empty for none.
    void SetID(ORVUnicodeString id) { identity_.Edit().id = std::move(id); }
    const ORVUnicodeString& GetID() const { return identity_.Get().id; }
    /// Text that describes the primitive; empty for none.
    void SetDescription(ORVUnicodeString description) {
        identity_.Edit().description = std::move(description);
    }
    const ORVUnicodeString& GetDescription() const { return identity_.Get().description; }
    /// Title, of a page above all; empty for none.
    void SetTitle(ORVUnicodeString title) { identity_.Edit().title = std::move(title); }
    const ORVUnicodeString& GetTitle() const { return identity_.Get().title; }

    /// Children, null for a class that has none.
    virtual const ORVPrtChildList* GetChildList() const { return nullptr; }

    /// Bytes of points and text that a duplicate copies.
    virtual std::size_t GetPayloadBytes() const { return 0; }

    /// The budget that this primitive and its duplicates were taken from; null when unlimited.
    ORVPrtPrimitiveBudget* GetBudget() const { return identity_.Get().budget; }
    /// Shares an identity, with its budget, in place of the own one.
    void SetIdentity(const ORVSharedValue<ORVPrtIdentity>& identity) { identity_ = identity; }

    /// A mark for walks that must visit shared primitives once; means nothing between walks.
    std::uint32_t GetVisitMark() const { return visitMark_; }
    /// Sets the mark.
    void SetVisitMark(std::uint32_t mark) const { visitMark_ = mark; }

protected:
    /// @param kind  of the derived class
    explicit ORVPrtGraphicPrimitiveElt(ORVPrtKind kind) : kind_(kind) {}
    /// A copy without the identity, which Duplicate copies.
    ORVPrtGraphicPrimitiveElt(const ORVPrtGraphicPrimitiveElt& other)
        : ORVBaseObject(other), kind_(other.kind_) {}
    ~ORVPrtGraphicPrimitiveElt() override = default;

    /// A copy of the object without its children and without identity texts and budget; null when memory is
    /// spent.
    virtual ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const = 0;
    /// Adds a child while a tree is duplicated; only called on classes that have children.
    virtual void AppendDuplicatedChild(ORVPrtGraphicPrimitiveElt& child);

private:
    ORVPrtGraphicPrimitiveElt* CopyNode() const;
    ORVPrtGraphicPrimitiveElt* CopyTree() const;

    mutable std::uint32_t visitMark_ = 0;  // first, behind the count of references: both are half a word
    ORVSharedValue<ORVPrtIdentity> identity_;
    ORVPrtKind kind_;
};
