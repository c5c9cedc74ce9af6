// SPDX-License-Identifier: Apache-2.0

// The DOM parser must give the same elements as the light one.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/tree_check.h"
#include "platform/system/ORVUnicodeString.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"

namespace {

const FuzzTarget kTarget("dom_xml", [](std::string_view bytes) {
    ORVUnicodeString text;
    if (text.BuildFromUTF8(bytes.data(), bytes.size()) < 0) return;
    ORVIDOMElement_var dom;
    ORVXmlError error;
    const int status = BuildParser(text, "SVG", dom, &error);
    Require((status == 1) == static_cast<bool>(dom) && (status == 1) == error.message.empty());

    // The two differ in the encoding and in the number of byte order marks they skip, and in nothing else.
    const bool hasSameEncoding =
        bytes.find("encoding") == bytes.npos && !text.GetView().starts_with("\xEF\xBB\xBF");
    ORVLightXmlElement light;
    if (hasSameEncoding)
        Require((ORVLightXmlParser().Parse({bytes.data(), bytes.size()}, light) == 1) == (status == 1));
    if (status != 1) return;
    for (const ORVXmlNode* node = dom.GetTree()->GetFirstNode(); node; node = node->nextSibling)
        WalkTree(node);
    if (hasSameEncoding) RequireSameTree(light.GetNode(), dom.GetNode());
});

}  // namespace
