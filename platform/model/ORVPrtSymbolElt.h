// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/model/carried_attributes.h"

/// A drawing that groups refer to: a symbol or a marker.
class ORV_PLATFORM_EXPORT ORVPrtSymbolElt final : public ORVPrtContainerElt, public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtSymbolElt() : ORVPrtContainerElt(ORVPrtKind::kSymbol) {}

    /// The part of the symbol's own coordinates that is shown.
    void SetViewBox(const ORVPrtViewBox& viewBox) {
        viewBox_ = std::make_shared<const ORVPrtViewBox>(viewBox);
    }
    /// Null when never set.
    const ORVPrtViewBox* GetViewBox() const { return viewBox_.get(); }

private:
    ORVPrtSymbolElt(const ORVPrtSymbolElt&) = default;
    ~ORVPrtSymbolElt() override = default;  // through Release() only
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    std::shared_ptr<const ORVPrtViewBox> viewBox_;
};
