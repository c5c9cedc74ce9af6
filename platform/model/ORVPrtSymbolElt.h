// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/model/carried_attributes.h"

/// A symbol or marker that groups refer to.
class ORV_PLATFORM_EXPORT ORVPrtSymbolElt final : public ORVPrtContainerElt, public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtSymbolElt() : ORVPrtContainerElt(ORVPrtKind::kSymbol) {}

    /// The visible area, in the symbol's coordinates.
    void SetViewBox(const ORVPrtViewBox& viewBox) {
        viewBox_ = std::make_shared<const ORVPrtViewBox>(viewBox);
    }
    /// The view box; null if never set.
    const ORVPrtViewBox* GetViewBox() const { return viewBox_.get(); }

private:
    ORVPrtSymbolElt(const ORVPrtSymbolElt&) = default;
    ~ORVPrtSymbolElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    std::shared_ptr<const ORVPrtViewBox> viewBox_;
};
