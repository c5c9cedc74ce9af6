// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <new>

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/system/lists.h"

class ORVPrtImageElt;

/// A print model: a list of pages. Holds a reference to each page. Primitives are created by the model, so
/// that their number can be limited.
class ORV_PLATFORM_EXPORT ORVPrtModel : public ORVBaseObject {
public:
    /// Default limit of primitives that a model may allocate.
    static constexpr std::uint64_t kDefaultPrimitiveLimit = 50'000'000;
    /// Sets the limit for models created afterwards in this process; see ORVPrintLimits for other limits.
    static void SetPrimitiveLimit(std::uint64_t limit);
    /// The limit for models created afterwards.
    static std::uint64_t GetPrimitiveLimit();

    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtModel();

    /// Appends a page and adds a reference to it.
    void AddImage(ORVPrtImageElt* image);
    /// Removes all pages.
    void RemoveImages();
    /// The pages in order; never null.
    const ORVListPtr<ORVPrtImageElt>* GetImages() const { return &images_; }

    /// Creates a primitive with one reference; null when out of memory or when the budget is exhausted.
    template <class Primitive>
    Primitive* Create() {
        if (!budget_->Take()) return nullptr;
        auto* primitive = new (std::nothrow) Primitive;
        if (primitive)
            primitive->SetIdentity(blank_);
        else
            budget_->NoteOutOfMemory();
        return primitive;
    }
    /// Resources used to build the model, and what was omitted because of limits.
    const ORVPrtPrimitiveBudget& GetBudget() const { return *budget_; }
    /// The same, for use while the model is built.
    ORVPrtPrimitiveBudget& GetBudget() { return *budget_; }

protected:
    ~ORVPrtModel() override;

private:
    ORVListPtr<ORVPrtImageElt> images_;
    ORVRef<ORVPrtPrimitiveBudget> budget_;
    ORVSharedValue<ORVPrtIdentity> blank_;  // shared by primitives without texts
};
