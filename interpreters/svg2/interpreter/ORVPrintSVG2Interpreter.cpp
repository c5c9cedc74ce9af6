// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/interpreter/ORVPrintSVG2Interpreter.h"

#include <string>
#include <utility>
#include <vector>

#include "interpreters/svg2/interpreter/DrawnDocument.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/xml/ORVLightXml.h"

namespace {

constexpr int kDone = 1, kUnreadable = -1, kNothing = 0;

/// Reads a whole stream, up to the limit of input size.
/// @return false if it cannot be read
bool ReadStream(ORVPrintInputStream& stream, std::string& bytes) {
    constexpr std::size_t kBlock = std::size_t{1} << 16U;
    if (stream.Open("rb") < 0 || stream.IsOpen() == 0 || stream.IsReadable() == 0) return false;
    const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kInputBytes);
    bool isWhole = true;
    while (stream.HasMoreData() && isWhole) {
        const std::size_t size = bytes.size();
        bytes.resize(size + kBlock);
        const std::size_t got = stream.Read(bytes.data() + size, kBlock);
        bytes.resize(size + got);
        // Reading nothing before the end is a failure.
        isWhole = bytes.size() <= most && (got > 0 || !stream.HasMoreData());
    }
    stream.Reset();
    stream.Seek(0);
    stream.Close();
    return isWhole && !bytes.empty();
}

std::unique_ptr<svg2::DrawnDocument> Open(ORVPrintInput* input) {
    if (!input) return nullptr;
    std::unique_ptr<svg2::DrawnDocument> document;
    if (input->IsAKindOf("ORVPrintInputStream")) {
        std::string bytes;
        if (!ReadStream(static_cast<ORVPrintInputStream&>(*input), bytes)) return nullptr;
        document = std::make_unique<svg2::DrawnDocument>(std::move(bytes));
        if (input->IsAKindOf("ORVPrintInputFileStream"))
            document->SetPath(static_cast<ORVPrintInputFileStream&>(*input).GetPath());
    } else if (input->IsAKindOf("ORVPrintInputXMLElement")) {
        const auto& elements = static_cast<ORVPrintInputXMLElement&>(*input);
        const ORVLightXmlElementItf* light = elements.GetXmlElement();
        const ORVIDOMElement_var& dom = elements.GetXmlElementDOM();
        // The DOM element is preferred: it knows the positions of text between elements.
        if (dom)
            document = std::make_unique<svg2::DrawnDocument>(dom.GetTree(), dom.GetNode());
        else if (light && light->GetNode())
            document = std::make_unique<svg2::DrawnDocument>(light->GetTree(), light->GetNode());
    }
    return document;
}

/// Runs the body of an entry point. No exception may leave the module.
template <class Work>
int Enter(Work work) {
    try {
        return work();
    } catch (...) {
        return kNothing;
    }
}

}  // namespace

ORVPrintSVG2Interpreter::ORVPrintSVG2Interpreter(ORVPrintInput* input)
    : ORVPrintInterpreter("SVG2"), document_(Open(input)) {}

ORVPrintSVG2Interpreter::~ORVPrintSVG2Interpreter() = default;

unsigned int ORVPrintSVG2Interpreter::SelectedPage() const {
    const std::size_t count = document_->GetPages().size();
    const bool usesFirst = allPages_ == 1 || currentPage_ == 0 || currentPage_ > count;
    return usesFirst ? 0 : currentPage_ - 1;
}

int ORVPrintSVG2Interpreter::SetCurrentPath(const ORVUnicodeString& path) {
    if (!document_) return kNothing;
    return Enter([&] {
        document_->SetPath(path);
        return kDone;
    });
}

int ORVPrintSVG2Interpreter::GetPageCount(unsigned int& count) {
    if (!document_) return kNothing;
    return Enter([&] {
        if (!document_->Parse()) return kUnreadable;
        count = static_cast<unsigned int>(document_->GetPages().size());
        return kDone;
    });
}

int ORVPrintSVG2Interpreter::GetSize(float& width, float& height) {
    if (!document_) return kNothing;
    return Enter([&] {
        if (!document_->Parse()) return kUnreadable;
        const svg2::Page& page = document_->GetPages()[SelectedPage()];
        width = static_cast<float>(page.GetWidth());
        height = static_cast<float>(page.GetHeight());
        return kDone;
    });
}

int ORVPrintSVG2Interpreter::GetTitle(ORVUnicodeString& title) {
    if (!document_) return kNothing;
    return Enter([&] {
        if (!document_->Parse()) return kUnreadable;
        title = ORVUnicodeString(document_->GetTitle(document_->GetPages()[SelectedPage()]));
        return kDone;
    });
}

int ORVPrintSVG2Interpreter::Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) {
    if (!document_) return kNothing;
    return Enter([&] {
        if (!document_->Parse()) return kUnreadable;
        std::vector<unsigned int> pages;
        const auto count = static_cast<unsigned int>(document_->GetPages().size());
        if (allPages_ != 1 && currentPage_ != 0) {
            if (currentPage_ > count) return kNothing;
            pages.push_back(currentPage_);
        } else if (!parameters.GetPages().empty()) {
            for (const unsigned int page : parameters.GetPages())
                if (page >= 1 && page <= count) pages.push_back(page);
        } else {
            for (unsigned int page = 1; page <= count; ++page) pages.push_back(page);
        }
        return document_->Draw(pages, generator, parameters);
    });
}
