// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/model/ORVPrtContainerElt.h"
#include "platform/model/ORVPrtGroupAttributes.h"
#include "platform/model/carried_attributes.h"

/// Primitives that are drawn together with a common transformation; may be a link.
class ORV_PLATFORM_EXPORT ORVPrtGroupElt final : public ORVPrtContainerElt, public ORVPrtTransformed {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    ORVPrtGroupElt() : ORVPrtContainerElt(ORVPrtKind::kGroup) {}

    /// Attributes of the group.
    void SetGroupAttributes(ORVPrtGroupAttributes attributes) { attributes_ = std::move(attributes); }
    const ORVPrtGroupAttributes& GetGroupAttributes() const { return attributes_; }

private:
    ORVPrtGroupElt(const ORVPrtGroupElt&) = default;
    ~ORVPrtGroupElt() override = default;  // objects are destroyed by Release()
    ORVPrtGraphicPrimitiveElt* CopyWithoutChildren() const override;

    ORVPrtGroupAttributes attributes_;
};
