#pragma once

#include <utility>

#include "platform/model/ORVPrtEnumerations.h"
#include "platform/system/ORVSharedValue.h"
#include "platform/system/ORVUnicodeString.h"

/// Target of a link: an element of the document by identifier, or a URL. A value that copies share.
class ORVPrintLinkURI {
public:
    void SetElementId(ORVUnicodeString id) { value_.Edit().elementId = std::move(id); }
    const ORVUnicodeString& GetElementId() const { return value_.Get().elementId; }
    void SetBaseURL(ORVUnicodeString url) { value_.Edit().baseURL = std::move(url); }
    const ORVUnicodeString& GetBaseURL() const { return value_.Get().baseURL; }
    void SetLinkShow(int show) { value_.Set(&Value::show, show); }
    int GetLinkShow() const { return value_.Get().show; }
    bool IsEmpty() const { return GetElementId().IsEmpty() && GetBaseURL().IsEmpty(); }

private:
    struct Value {
        ORVUnicodeString elementId, baseURL;
        int show = kLinkShowUnset;
        bool operator==(const Value&) const = default;
    };
    ORVSharedValue<Value> value_;
};
