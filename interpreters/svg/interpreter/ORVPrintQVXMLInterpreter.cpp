// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"

#include <memory>
#include <new>

#include "platform/print/ORVPrintInputXMLElement.h"

ORVPrintQVXMLInterpreter::ORVPrintQVXMLInterpreter(ORVPrintInputXMLElement* input)
    : ORVPrintInterpreter("QVXML") {
    if (!input || !input->IsAKindOf("ORVPrintInputXMLElement")) return;
    std::unique_ptr<SvgDocumentSource> source;
    if (const ORVLightXmlElementItf* light = input->GetXmlElement()) {
        lightElement_ = std::make_unique<ORVLightXmlElement>();
        if (lightElement_->Assign(*light) != 1) throw std::bad_alloc();  // handled by the factory
        source = std::make_unique<SvgDocumentSource>(lightElement_.get());
    } else {
        domElement_ = input->GetXmlElementDOM();
        if (domElement_) source = std::make_unique<SvgDocumentSource>(domElement_);
    }
    if (!source) return;
    source->SetEmbeddedFragment(1);
    interpretation_.SetSource(std::move(source));
}

ORVPrintQVXMLInterpreter::ORVPrintQVXMLInterpreter(const ORVPrintQVXMLInterpreter& /*other*/)
    : ORVPrintInterpreter("QVXML") {}

ORVPrintQVXMLInterpreter& ORVPrintQVXMLInterpreter::operator=(const ORVPrintQVXMLInterpreter& /*other*/) {
    return *this;
}

ORVPrintQVXMLInterpreter::~ORVPrintQVXMLInterpreter() = default;

int ORVPrintQVXMLInterpreter::GetSize(float& width, float& height) {
    return interpretation_.GetSize(GetSelection(), width, height);
}

int ORVPrintQVXMLInterpreter::GetPageCount(unsigned int& count) {
    return interpretation_.GetPageCount(count);
}

int ORVPrintQVXMLInterpreter::GetTitle(ORVUnicodeString& title) {
    return interpretation_.GetTitle(GetSelection(), title);
}

int ORVPrintQVXMLInterpreter::SetCurrentPath(const ORVUnicodeString& path) {
    return interpretation_.SetCurrentPath(path);
}

int ORVPrintQVXMLInterpreter::Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) {
    return interpretation_.Decode(GetSelection(), generator, parameters);
}
