// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "interpreters/svg2/interpreter/export.h"
#include "platform/print/ORVPrintInterpreter.h"

class ORVPrintInput;

namespace svg2 {
class DrawnDocument;
}

/// Prints a standard, static SVG drawing, given as a stream or as a parsed XML element. The constructor reads
/// a stream; the first query parses it. If the input is unusable, there is no document and queries return 0.
/// There is no print model: elements are drawn directly to the generator. Must be used by only one thread at
/// a time.
class ORV_MODULE_EXPORT ORVPrintSVG2Interpreter final : public ORVPrintInterpreter {
public:
    /// @param input  may be null. An XML element keeps its document alive; in a light element, text precedes
    ///         child elements, whatever their original order
    explicit ORVPrintSVG2Interpreter(ORVPrintInput* input);
    ~ORVPrintSVG2Interpreter() override;
    ORVPrintSVG2Interpreter(const ORVPrintSVG2Interpreter&) = delete;
    ORVPrintSVG2Interpreter& operator=(const ORVPrintSVG2Interpreter&) = delete;

    int GetSize(float& width, float& height) override;
    int GetPageCount(unsigned int& count) override;
    int GetTitle(ORVUnicodeString& title) override;

    /// Sets the path that relative references are resolved against.
    /// @return 1, or 0 if there is no document
    int SetCurrentPath(const ORVUnicodeString& path);

protected:
    int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) override;

private:
    /// Index from 0 of the page that queries refer to.
    unsigned int SelectedPage() const;

    std::unique_ptr<svg2::DrawnDocument> document_;
};
