// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "interpreters/svg/interpreter/SvgInterpretation.h"
#include "interpreters/svg/interpreter/export.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"

class ORVPrintInputXMLElement;

/// Prints an SVG drawing that is an XML element of a larger QVXML document. Such a fragment is placed on the
/// page by its own origin. An input that cannot be used leaves the interpreter without a document: its
/// queries return 0.
class ORV_MODULE_EXPORT ORVPrintQVXMLInterpreter final : public ORVPrintInterpreter {
public:
    /// @param input  may be null. A light element of it is preferred to a DOM one, and copied
    explicit ORVPrintQVXMLInterpreter(ORVPrintInputXMLElement* input);
    ~ORVPrintQVXMLInterpreter() override;

    int GetSize(float& width, float& height) override;
    int GetPageCount(unsigned int& count) override;
    int GetTitle(ORVUnicodeString& title) override;

    /// Sets the file that relative references are resolved against. @return 1, or 0 without a document
    int SetCurrentPath(const ORVUnicodeString& path);

protected:
    int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) override;

private:
    ORVPrintQVXMLInterpreter(const ORVPrintQVXMLInterpreter&);             // not meant to be used
    ORVPrintQVXMLInterpreter& operator=(const ORVPrintQVXMLInterpreter&);  // leaves the object unchanged

    SvgInterpretation::Selection GetSelection() const { return {currentPage_, allPages_ == 1}; }

    // Destroyed last to first: the document lets go of its element before the element goes.
    ORVIDOMElement_var domElement_;
    std::unique_ptr<ORVLightXmlElement> lightElement_;
    SvgInterpretation interpretation_;
};
