// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/carried_attributes.h"

/// A filled outline. Its children are ORVPrtClosedFigureRegionElt, one per contour.
class ORV_PLATFORM_EXPORT ORVPrtClosedFigureElt final : public ORVPrtContainerElt,
                                                        public ORVPrtDrawStyled,
                                                        public ORVPrtFilled,
                                                        public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtClosedFigureElt() : ORVPrtContainerElt(ORVPrtKind::kClosedFigure) {}

private:
    ORVPrtClosedFigureElt(const ORVPrtClosedFigureElt&) = default;
    ~ORVPrtClosedFigureElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;
};
