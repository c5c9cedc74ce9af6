// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintInput.h"
#include "platform/xml/ORVDOMXml.h"

class ORVLightXmlElementItf;

/// A parsed XML element: a light element, a DOM element, or both. If the document was parsed for a single
/// reading (ORVXmlReading), only one interpreter can build one model from it.
class ORV_PLATFORM_EXPORT ORVPrintInputXMLElement final : public ORVPrintInput {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// @param light  not owned, may be null; must outlive the interpreters made from this input
    explicit ORVPrintInputXMLElement(const ORVLightXmlElementItf* light) : light_(light) {}
    /// @param dom  may be null; shared
    explicit ORVPrintInputXMLElement(const ORVIDOMElement_var& dom) : dom_(dom) {}
    /// Holds both elements; interpreters prefer the light one.
    ORVPrintInputXMLElement(const ORVLightXmlElementItf* light, const ORVIDOMElement_var& dom)
        : light_(light), dom_(dom) {}

    /// The light element; null for none.
    const ORVLightXmlElementItf* GetXmlElement() const { return light_; }
    /// The DOM element; null for none.
    const ORVIDOMElement_var& GetXmlElementDOM() const { return dom_; }

private:
    ~ORVPrintInputXMLElement() override;

    const ORVLightXmlElementItf* light_ = nullptr;
    ORVIDOMElement_var dom_;
};
