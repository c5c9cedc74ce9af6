// SPDX-License-Identifier: Apache-2.0
#include "platform/model/ORVPrtModel.h"

#include "platform/model/ORVPrtImageElt.h"

void ORVPrtModel::SetPrimitiveLimit(std::uint64_t limit) {
    ORVPrintLimits::Set(ORVPrintLimit::kPrimitives, limit);
}

std::uint64_t ORVPrtModel::GetPrimitiveLimit() { return ORVPrintLimits::Get(ORVPrintLimit::kPrimitives); }

const ORVMetaClass& ORVPrtModel::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtModel", &ORVBaseObject::MetaClass(), "ORVnull",
                                        "ORVPrt2DModel");
    return metaClass;
}

ORVPrtModel::ORVPrtModel() : budget_(new ORVPrtPrimitiveBudget(GetPrimitiveLimit())) {
    blank_.Edit().SetBudget(budget_.get());
}

ORVPrtModel::~ORVPrtModel() { RemoveImages(); }

void ORVPrtModel::AddImage(ORVPrtImageElt* image) {
    if (!image) return;
    images_.push_back(image);
    image->AddRef();
}

void ORVPrtModel::RemoveImages() {
    for (const ORVPrtImageElt* image : images_) image->Release();
    images_.clear();
}
