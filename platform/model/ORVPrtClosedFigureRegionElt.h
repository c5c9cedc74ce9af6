// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/carried_attributes.h"

/// One contour of a closed figure. Its primitives are joined in order.
class ORV_PLATFORM_EXPORT ORVPrtClosedFigureRegionElt final : public ORVPrtContainerElt,
                                                              public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtClosedFigureRegionElt() : ORVPrtContainerElt(ORVPrtKind::kRegion) {}

private:
    ORVPrtClosedFigureRegionElt(const ORVPrtClosedFigureRegionElt&) = default;
    ~ORVPrtClosedFigureRegionElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;
};
