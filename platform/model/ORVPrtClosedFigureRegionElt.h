// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/carried_attributes.h"

/// One contour of a closed figure: its primitives in order, each continuing the one before it.
class ORV_PLATFORM_EXPORT ORVPrtClosedFigureRegionElt final : public ORVPrtContainerElt,
                                                              public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtClosedFigureRegionElt() : ORVPrtContainerElt(ORVPrtKind::kRegion) {}

private:
    ORVPrtClosedFigureRegionElt(const ORVPrtClosedFigureRegionElt&) = default;
    ~ORVPrtClosedFigureRegionElt() override = default;  // through Release() only
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;
};
