// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "interpreters/svg/interpreter/SvgInterpretation.h"
#include "interpreters/svg/interpreter/export.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"

class ORVPrintInputXMLElement;

/// Prints an SVG drawing embedded as an element in a QVXML document, positioned on the page by its own
/// origin. If the input is unusable, there is no document and queries return 0.
class ORV_MODULE_EXPORT ORVPrintQVXMLInterpreter final : public ORVPrintInterpreter {
public:
    /// @param input  may be null. Its light element, if any, is preferred to the DOM one and is copied
    explicit ORVPrintQVXMLInterpreter(ORVPrintInputXMLElement* input);
    ~ORVPrintQVXMLInterpreter() override;

    int GetSize(float& width, float& height) override;
    int GetPageCount(unsigned int& count) override;
    int GetTitle(ORVUnicodeString& title) override;

    /// Sets the path that relative references are resolved against.
    /// @return 1, or 0 if there is no document
    int SetCurrentPath(const ORVUnicodeString& path);

protected:
    int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) override;

private:
    ORVPrintQVXMLInterpreter(const ORVPrintQVXMLInterpreter&);             // not meant to be used
    ORVPrintQVXMLInterpreter& operator=(const ORVPrintQVXMLInterpreter&);  // leaves the object unchanged

    SvgInterpretation::Selection GetSelection() const { return {currentPage_, allPages_ == 1}; }

    // Members are destroyed in reverse order: the document must release its element before the element is
    // destroyed.
    ORVIDOMElement_var domElement_;
    std::unique_ptr<ORVLightXmlElement> lightElement_;
    SvgInterpretation interpretation_;
};
