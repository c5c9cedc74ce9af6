// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <new>

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/system/lists.h"

class ORVPrtImageElt;

/// A print model: pages of primitives. It references its pages, and it is where primitives come from, so
/// that their number stays bounded.
class ORV_PLATFORM_EXPORT ORVPrtModel : public ORVBaseObject {
public:
    /// Primitives that a model may allocate when the host says nothing else.
    static constexpr std::uint64_t kDefaultPrimitiveLimit = 50'000'000;
    /// Sets the limit for models created from now on, in this process; see ORVPrintLimits for others.
    static void SetPrimitiveLimit(std::uint64_t limit);
    /// The limit for models created from now on.
    static std::uint64_t GetPrimitiveLimit();

    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtModel();

    /// Appends a page and references it.
    void AddImage(ORVPrtImageElt* image);
    /// Leaves the model without pages.
    void RemoveImages();
    /// The pages in order; never null, empty for a model without pages.
    const ORVListPtr<ORVPrtImageElt>* GetImages() const { return &images_; }

    /// A new primitive with one reference; null when out of memory or over the budget.
    template <class Primitive>
    Primitive* Create() {
        if (!budget_->Take()) return nullptr;
        auto* primitive = new (std::nothrow) Primitive;
        if (primitive)
            primitive->SetIdentity(blank_);
        else
            budget_->NoteMemorySpent();
        return primitive;
    }
    /// What building the model took, and what was left out for want of it.
    const ORVPrtPrimitiveBudget& GetBudget() const { return *budget_; }
    /// The same, for those who build the model.
    ORVPrtPrimitiveBudget& GetBudget() { return *budget_; }

protected:
    ~ORVPrtModel() override;

private:
    ORVListPtr<ORVPrtImageElt> images_;
    ORVRef<ORVPrtPrimitiveBudget> budget_;
    ORVSharedValue<ORVPrtIdentity> blank_;  // of primitives that have no texts (yet)
};
