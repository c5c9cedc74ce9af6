// SPDX-License-Identifier: Apache-2.0

// The check of documents: it must end, within limits, for whatever the parser accepts.

#include <vector>

#include "fuzz/support/FuzzTarget.h"
#include "library/check/document_check.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"

namespace {

const FuzzTarget kTarget("check", [](std::string_view bytes) {
    ORVLightXmlParser parser;
    ORVLightXmlElement root;
    std::vector<ORVXmlPlace> places;
    parser.Parse({bytes.data(), bytes.size()}, root, &places);
    if (!root.GetNode()) return;

    CheckedDocument document{root.GetNode(), bytes, &places, {}, {}};
    for (const bool hasFragments : {false, true}) {
        if (hasFragments)
            for (const ORVXmlNode* fragment : FindOutermostSvgElements(root.GetNode()))
                document.fragments.insert(fragment);
        Findings findings;
        CheckDocument(document, findings);
        // Every finding has a position, because the positions of all elements are recorded.
        for (const Finding& finding : findings.GetKept()) Require(finding.line > 0 && finding.column > 0);
    }
});

}  // namespace
