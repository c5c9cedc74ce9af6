// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/definitions/ORVPrtDefsElt.h"

#include <new>

const ORVMetaClass& ORVPrtDefsElt::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtDefsElt", &ORVPrtGraphicPrimitiveElt::MetaClass(), "ORVnull",
                                        "PrintKernel");
    return metaClass;
}

ORVPrtGraphicPrimitiveElt* ORVPrtDefsElt::CopyWithoutChildren() const {
    return new (std::nothrow) ORVPrtDefsElt(*this);
}
