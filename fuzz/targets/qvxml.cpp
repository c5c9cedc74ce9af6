// SPDX-License-Identifier: Apache-2.0

// Drawings inside an XML document: each fragment goes through its interpreter, with the tree of either
// parser.

#include <memory>

#include "fuzz/support/FuzzBytes.h"
#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/documents.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"
#include "tests/support/CheckingGenerator.h"

namespace {

constexpr std::size_t kMostFragments = 8;

const FuzzTarget kTarget("qvxml", [](std::string_view bytes) {
    FuzzBytes choices(bytes);
    const bool usesDom = choices.Flag();
    const std::string_view document = choices.GetRest();
    ORVLightXmlElement root;
    ORVLightXmlParser().Parse({document.data(), document.size()}, root);

    auto fragments = FindOutermostSvgElements(root.GetNode());
    if (fragments.size() > kMostFragments) fragments.resize(kMostFragments);
    if (root.GetNode()) fragments.push_back(root.GetNode());
    for (const ORVXmlNode* fragment : fragments) {
        const ORVLightXmlElement light(root.GetTree(), fragment);
        const ORVIDOMElement_var dom(root.GetTree(), fragment);
        const ORVRef<ORVPrintInputXMLElement> input(usesDom ? new ORVPrintInputXMLElement(dom)
                                                            : new ORVPrintInputXMLElement(&light));
        const std::unique_ptr<ORVPrintInterpreter> interpreter(
            fctCreateORVPrintQVXMLInterpreter(input.get()));
        CheckingGenerator generator;
        PrintAllPages(*interpreter, generator);
        RequireNoFault(generator);
    }
});

}  // namespace
