// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/interpreter/SvgInterpretation.h"
#include "interpreters/svg/interpreter/export.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/xml/ORVDOMXml.h"

class ORVPrintInput;

/// Prints an SVG document given as a stream or as a parsed XML element. The constructor reads a stream into
/// memory; the first query builds the model. If the input is unusable, there is no document and queries
/// return 0.
class ORV_MODULE_EXPORT ORVPrintSVGInterpreter final : public ORVPrintInterpreter {
public:
    /// @param input  may be null. Its light element is not copied: the input must outlive the interpreter
    explicit ORVPrintSVGInterpreter(ORVPrintInput* input);
    ~ORVPrintSVGInterpreter() override;

    int GetSize(float& width, float& height) override;
    int GetPageCount(unsigned int& count) override;
    int GetTitle(ORVUnicodeString& title) override;

    /// Sets the path that relative references are resolved against.
    /// @return 1, or 0 if there is no document
    int SetCurrentPath(const ORVUnicodeString& path);

protected:
    int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) override;

private:
    ORVPrintSVGInterpreter();
    ORVPrintSVGInterpreter(const ORVPrintSVGInterpreter&);             // not meant to be used
    ORVPrintSVGInterpreter& operator=(const ORVPrintSVGInterpreter&);  // leaves the object unchanged

    SvgInterpretation::Selection GetSelection() const { return {currentPage_, allPages_ == 1}; }

    // Members are destroyed in reverse order: the document must release its element before the element is
    // destroyed.
    ORVIDOMElement_var domElement_;
    SvgInterpretation interpretation_;
};
