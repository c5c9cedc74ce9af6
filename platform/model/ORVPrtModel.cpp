#include "platform/model/ORVPrtModel.h"

#include <atomic>

#include "platform/model/ORVPrtImageElt.h"

namespace {
std::atomic<std::uint64_t> primitiveLimit{ORVPrtModel::kDefaultPrimitiveLimit};
}  // namespace

void ORVPrtModel::SetPrimitiveLimit(std::uint64_t limit) { primitiveLimit = limit; }

std::uint64_t ORVPrtModel::GetPrimitiveLimit() { return primitiveLimit; }

const ORVMetaClass& ORVPrtModel::MetaClass() {
    static const ORVMetaClass metaClass("ORVPrtModel", &ORVBaseObject::MetaClass(), "ORVnull",
                                        "ORVPrt2DModel");
    return metaClass;
}

ORVPrtModel::ORVPrtModel() : budget_(new ORVPrtPrimitiveBudget(primitiveLimit)) {
    blank_.Edit().SetBudget(budget_);
}

ORVPrtModel::~ORVPrtModel() {
    for (const ORVPrtImageElt* image : images_) image->Release();
    budget_->Release();
}

void ORVPrtModel::AddImage(ORVPrtImageElt* image) {
    if (!image) return;
    images_.push_back(image);
    image->AddRef();
}
