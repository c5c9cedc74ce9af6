// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <concepts>
#include <string>

#include "interpreters/svg/state/element_access.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"

/// Both kinds of element access, for typed tests.
using ElementAccesses = testing::Types<DomElementAccess, LightElementAccess>;

/// The root of a small document, parsed by the access's back-end.
template <SvgElementAccess Element>
class ParsedElement {
public:
    explicit ParsedElement(const std::string& document) {
        if constexpr (std::same_as<Element, DomElementAccess>) {
            EXPECT_EQ(BuildParser(ORVUnicodeString(document), "SVG", domRoot_), 1) << document;
        } else {
            EXPECT_EQ(ORVLightXmlParser().Parse({document.data(), document.size()}, lightRoot_), 1)
                << document;
        }
    }

    /// Valid as long as this object.
    Element Get() const {
        if constexpr (std::same_as<Element, DomElementAccess>)
            return Element(domRoot_.GetNode());
        else
            return Element(lightRoot_.GetNode());
    }

private:
    ORVIDOMElement_var domRoot_;
    ORVLightXmlElement lightRoot_;
};
