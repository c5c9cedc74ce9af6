// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/ORVPrtGroupAttributes.h"
#include "platform/model/carried_attributes.h"

/// Primitives that are drawn together, under one transform, perhaps as a link.
class ORV_PLATFORM_EXPORT ORVPrtGroupElt final : public ORVPrtContainerElt, public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtGroupElt() : ORVPrtContainerElt(ORVPrtKind::kGroup) {}

    /// What the group carries besides its children.
    void SetGroupAttributes(ORVPrtGroupAttributes attributes) { attributes_ = std::move(attributes); }
    const ORVPrtGroupAttributes& GetGroupAttributes() const { return attributes_; }

private:
    ORVPrtGroupElt(const ORVPrtGroupElt&) = default;
    ~ORVPrtGroupElt() override = default;  // through Release() only
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVPrtGroupAttributes attributes_;
};
