// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"

#include <memory>

#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"

ORVPrintSVGInterpreter::ORVPrintSVGInterpreter() : ORVPrintInterpreter("SVG") {}

ORVPrintSVGInterpreter::ORVPrintSVGInterpreter(ORVPrintInput* input) : ORVPrintSVGInterpreter() {
    if (!input) return;
    std::unique_ptr<SvgDocumentSource> source;
    if (input->IsAKindOf("ORVPrintInputStream")) {
        source = std::make_unique<SvgDocumentSource>(static_cast<ORVPrintInputStream&>(*input));
        if (input->IsAKindOf("ORVPrintInputFileStream"))
            source->SetCurrentPath(static_cast<ORVPrintInputFileStream&>(*input).GetPath());
    } else if (input->IsAKindOf("ORVPrintInputXMLElement")) {
        const auto& elements = static_cast<ORVPrintInputXMLElement&>(*input);
        if (const ORVLightXmlElementItf* light = elements.GetXmlElement()) {
            source = std::make_unique<SvgDocumentSource>(light);
        } else {
            domElement_ = elements.GetXmlElementDOM();
            if (domElement_) source = std::make_unique<SvgDocumentSource>(domElement_);
        }
    }
    if (source) interpretation_.SetSource(std::move(source));
}

ORVPrintSVGInterpreter::ORVPrintSVGInterpreter(const ORVPrintSVGInterpreter& /*other*/)
    : ORVPrintSVGInterpreter() {}

ORVPrintSVGInterpreter& ORVPrintSVGInterpreter::operator=(const ORVPrintSVGInterpreter& /*other*/) {
    return *this;
}

ORVPrintSVGInterpreter::~ORVPrintSVGInterpreter() = default;

int ORVPrintSVGInterpreter::GetSize(float& width, float& height) {
    return interpretation_.GetSize(GetSelection(), width, height);
}

int ORVPrintSVGInterpreter::GetPageCount(unsigned int& count) { return interpretation_.GetPageCount(count); }

int ORVPrintSVGInterpreter::GetTitle(ORVUnicodeString& title) {
    return interpretation_.GetTitle(GetSelection(), title);
}

int ORVPrintSVGInterpreter::SetCurrentPath(const ORVUnicodeString& path) {
    return interpretation_.SetCurrentPath(path);
}

int ORVPrintSVGInterpreter::Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) {
    return interpretation_.Decode(GetSelection(), generator, parameters);
}
