// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/interpreter/SvgInterpretation.h"
#include "interpreters/svg/interpreter/export.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/xml/ORVDOMXml.h"

class ORVPrintInput;

/// Prints an SVG document given as a stream or as a parsed XML element. A stream is read into memory by the
/// constructor; the model is built by the first query. An input that cannot be used leaves the interpreter
/// without a document: its queries return 0.
class ORV_MODULE_EXPORT ORVPrintSVGInterpreter final : public ORVPrintInterpreter {
public:
    /// @param input  may be null. A light element of it is not copied: the input must outlive the interpreter
    explicit ORVPrintSVGInterpreter(ORVPrintInput* input);
    ~ORVPrintSVGInterpreter() override;

    int GetSize(float& width, float& height) override;
    int GetPageCount(unsigned int& count) override;
    int GetTitle(ORVUnicodeString& title) override;

    /// Sets the file that relative references are resolved against. @return 1, or 0 without a document
    int SetCurrentPath(const ORVUnicodeString& path);

protected:
    int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) override;

private:
    ORVPrintSVGInterpreter();
    ORVPrintSVGInterpreter(const ORVPrintSVGInterpreter&);             // not meant to be used
    ORVPrintSVGInterpreter& operator=(const ORVPrintSVGInterpreter&);  // leaves the object unchanged

    SvgInterpretation::Selection GetSelection() const { return {currentPage_, allPages_ == 1}; }

    // Destroyed last to first: the document lets go of its element before the element goes.
    ORVIDOMElement_var domElement_;
    SvgInterpretation interpretation_;
};
