// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtImageElt.h"

#include <new>

#include "platform/model/ORVPrtColourTable.h"

const ORVMetaClass& ORVPrtImageElt::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtImageElt", &ORVPrtContainerElt::MetaClass(), "ORVnull",
                                        "ORVPrt2DModel");
    return metaClass;
}

ORVPrtImageElt::ORVPrtImageElt() : ORVPrtContainerElt(ORVPrtKind::kImage) {}

ORVPrtImageElt::~ORVPrtImageElt() = default;

void ORVPrtImageElt::SetColourTable(ORVPrtColourTable* table) {
    colours_ = ORVRef<ORVPrtColourTable>::Share(table);
}

ORVPrtGraphicPrimitiveElt* ORVPrtImageElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtImageElt(*this);
}
