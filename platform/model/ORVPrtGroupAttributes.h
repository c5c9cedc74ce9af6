// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/model/ORVPrintLinkURI.h"

/// Attributes of a group: the target of a link.
class ORVPrtGroupAttributes {
public:
    /// Target of the link; empty when the group is not a link.
    void SetLinkURI(ORVPrintLinkURI link) { link_ = std::move(link); }
    const ORVPrintLinkURI& GetLinkURI() const { return link_; }

private:
    ORVPrintLinkURI link_;
};
