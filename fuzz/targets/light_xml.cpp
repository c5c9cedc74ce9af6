// SPDX-License-Identifier: Apache-2.0

// The light parser: checks the tree of a complete or broken document, and a copy of it.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/tree_check.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"

namespace {

const FuzzTarget kTarget("light_xml", [](std::string_view bytes) {
    ORVLightXmlParser parser;
    ORVLightXmlElement root;
    ORVLightXmlInputStreamBuffer stream(bytes.data(), bytes.size());
    const int status = parser.Parse(stream, root);
    Require((status == 1) == parser.GetError().message.empty());
    Require(status == 1 ? root.GetNode() != nullptr : parser.GetError().offset <= bytes.size());
    WalkTree(root.GetNode());

    ORVLightXmlElement copy;
    Require(copy.Assign(root) == 1);
    RequireSameTree(root.GetNode(), copy.GetNode());
    Require(FindOutermostSvgElements(root.GetNode()).size() <= FindSvgElements(root.GetNode()).size());
});

}  // namespace
