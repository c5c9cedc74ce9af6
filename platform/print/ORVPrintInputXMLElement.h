#pragma once

#include "platform/print/ORVPrintInput.h"
#include "platform/xml/ORVDOMXml.h"

class ORVLightXmlElementItf;

/// A parsed XML element: a light one, a DOM one, or both.
class ORV_PLATFORM_EXPORT ORVPrintInputXMLElement final : public ORVPrintInput {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// @param light  not owned, may be null; must outlive the interpreters made from this input
    explicit ORVPrintInputXMLElement(const ORVLightXmlElementItf* light) : light_(light) {}
    explicit ORVPrintInputXMLElement(const ORVIDOMElement_var& dom) : dom_(dom) {}
    ORVPrintInputXMLElement(const ORVLightXmlElementItf* light, const ORVIDOMElement_var& dom)
        : light_(light), dom_(dom) {}

    const ORVLightXmlElementItf* GetXmlElement() const { return light_; }
    const ORVIDOMElement_var& GetXmlElementDOM() const { return dom_; }

    /// The elements are not going to be read again once the one interpreter that gets them has built its
    /// model: it gives the memory of long texts back as soon as it has read them. Before that nothing is
    /// lost.
    void SetIsReadOnce(bool isReadOnce) { isReadOnce_ = isReadOnce; }
    bool IsReadOnce() const { return isReadOnce_; }

private:
    ~ORVPrintInputXMLElement() override;

    const ORVLightXmlElementItf* light_ = nullptr;
    ORVIDOMElement_var dom_;
    bool isReadOnce_ = false;
};
