// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/model/ORVPrintLinkURI.h"

/// What a group carries besides its children: the target of a link.
class ORVPrtGroupAttributes {
public:
    /// Where the group leads when it is a link; empty when it is none.
    void SetLinkURI(ORVPrintLinkURI link) { link_ = std::move(link); }
    const ORVPrintLinkURI& GetLinkURI() const { return link_; }

private:
    ORVPrintLinkURI link_;
};
