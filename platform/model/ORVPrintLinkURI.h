// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>

#include "platform/model/ORVPrtEnumerations.h"
#include "platform/system/ORVSharedValue.h"
#include "platform/system/ORVUnicodeString.h"

/// Target of a link: the identifier of an element in the document, or a URL. Copy-on-write value.
class ORVPrintLinkURI {
public:
    /// Identifier of the target element; empty for none.
    void SetElementId(ORVUnicodeString id) { value_.Edit().elementId = std::move(id); }
    const ORVUnicodeString& GetElementId() const { return value_.Get().elementId; }
    /// URL of the target, UTF-8; empty for none.
    void SetBaseURL(ORVUnicodeString url) { value_.Edit().baseURL = std::move(url); }
    const ORVUnicodeString& GetBaseURL() const { return value_.Get().baseURL; }
    /// A value of orvprint::ORVPrintLinkShow.
    void SetLinkShow(int show) { value_.Set(&Value::show, show); }
    int GetLinkShow() const { return value_.Get().show; }
    /// Whether there is neither an identifier nor a URL.
    bool IsEmpty() const { return GetElementId().IsEmpty() && GetBaseURL().IsEmpty(); }

private:
    struct Value {
        ORVUnicodeString elementId, baseURL;
        int show = orvprint::kLinkShowUnset;
        bool operator==(const Value&) const = default;
    };
    ORVSharedValue<Value> value_;
};
