// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/document/parsing.h"

#include <new>
#include <utility>

#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlError.h"

namespace svg2 {

std::unique_ptr<Document> ParseDocument(std::string bytes) {
    const auto owner = std::make_shared<const std::string>(std::move(bytes));
    ORVIDOMElement_var root;
    ORVXmlError error;
    if (ORVParseXml({owner, std::string_view(*owner)}, root, &error) != 1) {
        if (error.isOutOfMemory) throw std::bad_alloc();
        return nullptr;
    }
    return std::make_unique<Document>(root.GetTree(), *root.GetNode());
}

}  // namespace svg2
