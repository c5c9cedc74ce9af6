// The check of documents must end, in bounds, on whatever the parser takes.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "apps/orvprint/check/document_check.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    ORVLightXmlParser parser;
    ORVLightXmlElement root;
    std::vector<ORVXmlPlace> places;
    parser.Parse({bytes.data(), bytes.size()}, root, &places);
    if (!root.GetNode()) return 0;

    CheckedDocument document{root.GetNode(), bytes, &places, {}, {}};
    for (const bool hasFragments : {false, true}) {
        if (hasFragments)
            for (const ORVXmlNode* fragment : FindOutermostSvgElements(root.GetNode()))
                document.fragments.insert(fragment);
        Findings findings;
        CheckDocument(document, findings);
        // What is found has a place, for every element was counted.
        for (const Finding& finding : findings.GetKept())
            if (finding.line == 0 || finding.column == 0) std::abort();
    }
    return 0;
}
