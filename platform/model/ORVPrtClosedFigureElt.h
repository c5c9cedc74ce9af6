// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/carried_attributes.h"

/// A filled outline; its children are regions, one contour each.
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
    ~ORVPrtClosedFigureElt() override = default;  // through Release() only
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;
};
