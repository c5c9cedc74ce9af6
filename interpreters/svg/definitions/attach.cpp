// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/definitions/attach.h"

#include "interpreters/svg/definitions/ORVPrtDefsElt.h"
#include "platform/model/ORVPrtContainerElt.h"

ORVPrtDefsElt* AsDefinitionHolder(ORVPrtGraphicPrimitiveElt& container) {
    if (container.GetKind() != ORVPrtKind::kOther || &container.GetMetaClass() != &ORVPrtDefsElt::MetaClass())
        return nullptr;
    return static_cast<ORVPrtDefsElt*>(&container);
}

void AttachToContainer(ORVPrtGraphicPrimitiveElt& container, ORVPrtGraphicPrimitiveElt& primitive) {
    switch (container.GetKind()) {
        case ORVPrtKind::kGroup:
        case ORVPrtKind::kImage:
        case ORVPrtKind::kSymbol:
        case ORVPrtKind::kPattern:
        case ORVPrtKind::kRegion: static_cast<ORVPrtContainerElt&>(container).AddChild(&primitive); return;
        default:
            if (ORVPrtDefsElt* holder = AsDefinitionHolder(container)) holder->AddChild(&primitive);
    }
}
