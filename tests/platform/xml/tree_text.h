// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/system/ORVUnicodeString.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"

/// Formats an element and its descendants in one line for comparison:
/// name{attribute=value}'own text'(children).
/// @param elementsOnly  omits texts and comments, so that trees of both parsers can be compared
inline std::string TreeText(const ORVXmlNode* node, bool elementsOnly = true) {
    std::string out;
    if (!node) return out;
    struct Step {
        const ORVXmlNode* node;  // null for a closing bracket
    };
    std::vector<Step> pending{{node}};
    while (!pending.empty()) {
        const ORVXmlNode* const one = pending.back().node;
        pending.pop_back();
        if (!one) {
            out += ')';
            continue;
        }
        out.append(one->GetName());
        if (one->attributeCount > 0) {
            out += '{';
            for (std::uint32_t i = 0; i < one->attributeCount; ++i) {
                if (i > 0) out += ' ';
                const ORVXmlAttribute attribute = one->GetAttribute(i);
                out.append(attribute.name).append("=").append(attribute.value);
            }
            out += '}';
        }
        if (!one->GetText().empty()) out.append("'").append(one->GetText()).append("'");
        std::vector<Step> children;
        for (const ORVXmlNode* child = one->firstChild; child; child = child->nextSibling)
            if (!elementsOnly || child->IsElement()) children.push_back({child});
        if (children.empty()) continue;
        out += '(';
        pending.push_back({nullptr});
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return out;
}

struct LightResult {
    int status = 0;
    ORVLightXmlElement root;
    ORVXmlError error;
    std::string Text() const { return TreeText(root.GetNode()); }
};

inline LightResult ParseLight(std::string_view document) {
    LightResult result;
    ORVLightXmlInputStreamBuffer stream(document.data(), document.size());
    ORVLightXmlParser parser;
    result.status = parser.Parse(stream, result.root);
    result.error = parser.GetError();
    return result;
}

struct DomResult {
    int status = 0;
    ORVIDOMElement_var root;
    ORVXmlError error;
    std::string Text(bool elementsOnly = true) const { return TreeText(root.GetNode(), elementsOnly); }
};

inline DomResult ParseDom(std::string_view document) {
    DomResult result;
    ORVUnicodeString text;
    if (text.BuildFromUTF8(document.data(), document.size()) < 0) {
        result.status = -1;
        return result;
    }
    result.status = BuildParser(text, "SVG", result.root, &result.error);
    return result;
}
