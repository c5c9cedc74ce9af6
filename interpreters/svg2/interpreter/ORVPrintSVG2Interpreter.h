// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "interpreters/svg2/interpreter/export.h"
#include "platform/print/ORVPrintInterpreter.h"

class ORVPrintInput;

namespace svg2 {
class DrawnDocument;
}

/// Prints a drawing of standard, static SVG, given as a stream or as a parsed XML element. A stream is read
/// by the constructor; the first query parses it. An input that cannot be used leaves the interpreter without
/// a document: its queries return 0. There is no print model: drawings go from their elements straight to the
/// generator. Belongs to one thread at a time.
class ORV_MODULE_EXPORT ORVPrintSVG2Interpreter final : public ORVPrintInterpreter {
public:
    /// @param input  may be null. An XML element keeps its document alive; of a light element, text comes
    ///               before the elements within it, whatever their order was
    explicit ORVPrintSVG2Interpreter(ORVPrintInput* input);
    ~ORVPrintSVG2Interpreter() override;
    ORVPrintSVG2Interpreter(const ORVPrintSVG2Interpreter&) = delete;
    ORVPrintSVG2Interpreter& operator=(const ORVPrintSVG2Interpreter&) = delete;

    int GetSize(float& width, float& height) override;
    int GetPageCount(unsigned int& count) override;
    int GetTitle(ORVUnicodeString& title) override;

    /// Sets the file that relative references are resolved against. @return 1, or 0 without a document
    int SetCurrentPath(const ORVUnicodeString& path);

protected:
    int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) override;

private:
    /// Page that queries are about, from 0.
    unsigned int SelectedPage() const;

    std::unique_ptr<svg2::DrawnDocument> document_;
};
