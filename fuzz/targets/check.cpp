// SPDX-License-Identifier: Apache-2.0

// The check of documents: ends, in bounds, on whatever the parser takes.

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
        // What is found has a place, for every element was counted.
        for (const Finding& finding : findings.GetKept()) Require(finding.line > 0 && finding.column > 0);
    }
});

}  // namespace
