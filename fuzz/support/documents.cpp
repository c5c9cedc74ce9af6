// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/documents.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "fuzz/support/FuzzBytes.h"
#include "fuzz/support/FuzzTarget.h"
#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/formats.h"
#include "generators/sheet/ORVSheetGenerator.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVXmlNode.h"
#include "tests/support/CheckingGenerator.h"
#include "tests/support/scoped_environment.h"

namespace {

/// Keeps the output in memory, and fails when its capacity would be exceeded.
class LimitedOutput final : public ORVOutput {
public:
    explicit LimitedOutput(std::optional<std::size_t> capacity) : capacity_(capacity) {}

    int BeginPart() override {
        ++parts_;
        return 1;
    }
    int EndPart() override { return hasFailed_ ? 0 : 1; }
    int Commit() override { return hasFailed_ ? 0 : 1; }

    bool HasFailed() const { return hasFailed_; }
    std::size_t GetPartCount() const { return parts_; }
    std::string TakeBytes() { return std::move(bytes_); }

private:
    int Append(const void* bytes, std::size_t size) override {
        if (capacity_ && bytes_.size() + size > *capacity_) {
            hasFailed_ = true;
            return Fail("full");
        }
        bytes_.append(static_cast<const char*>(bytes), size);
        return 1;
    }

    const std::optional<std::size_t> capacity_;
    std::string bytes_;
    std::size_t parts_ = 0;
    bool hasFailed_ = false;
};

ORVFormatOptions ChooseFormat(FuzzBytes& choices) {
    static constexpr double kResolutions[] = {20.0, 72.0, 90.0, 7.3};
    static constexpr ORVColourMode kModes[] = {ORVColourMode::kColour, ORVColourMode::kGrey,
                                               ORVColourMode::kMono};
    ORVFormatOptions options;
    options.dotsPerInch = kResolutions[choices.Below(4)];
    options.colourMode = kModes[choices.Below(3)];
    options.pixelLimit = 1 << 18;
    options.threads = 1;
    if (choices.Flag()) options.creationTime = 1'000'000'000;
    return options;
}

// @return nothing to print the pages without sheets
std::optional<ORVSheetOptions> ChooseSheets(FuzzBytes& choices, ORVColourMode mode, bool makesDots) {
    const std::size_t kind = choices.Below(6);
    if (kind == 0) return std::nullopt;
    ORVSheetOptions options;
    options.colourMode = mode;
    options.keepsGreys = makesDots;
    options.strokeScale = choices.Flag() ? 2.5 : 1.0;
    options.leastLineWidth = choices.Flag() ? 1.5 : 0.0;
    if (kind >= 2) options.layout.paper = ORVPaperSize{120.0, 160.0};
    if (kind == 3) options.layout.isPoster = true;
    if (kind == 4) options.layout.pagesPerSheet = 4;
    const std::size_t scale = choices.Below(4);
    options.layout.scale.kind = static_cast<ORVSheetScale::Kind>(scale);
    options.layout.scale.factor = choices.Flag() ? 0.3 : 1.7;
    if (choices.Flag()) options.layout.margins = ORVSheetMargins{5.0, 6.0, 7.0, 8.0};
    if (!ORVCheckSheetLayout(options.layout).empty()) return std::nullopt;
    return options;
}

bool IsSmallSheetCount(ORVPrintInterpreter& interpreter, const ORVSheetLayout& layout) {
    unsigned int count = 0;
    if (interpreter.GetPageCount(count) != 1) return true;
    std::vector<ORVPaperSize> pages;
    for (unsigned int page = 1; page <= count; ++page) {
        float width = 0.0F, height = 0.0F;
        interpreter.SetCurrentPage(page);
        interpreter.GetSize(width, height);
        pages.push_back({static_cast<double>(width), static_cast<double>(height)});
    }
    interpreter.SetCurrentPage(0);
    return ORVCountSheets(layout, pages) <= 40.0;
}

std::unique_ptr<ORVPrintInterpreter> Interpret(std::string_view document, bool usesDom) {
    const ScopedEnvironment backend("PRINT_WITHOUT_DOM_PARSER", usesDom ? nullptr : "");
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(std::string(document)));
    return std::unique_ptr<ORVPrintInterpreter>(fctCreateORVPrintSVGInterpreter(input.get()));
}

std::string Escaped(std::string_view text) {
    std::string result;
    for (const char c : text) {
        // Character references keep white space from being normalised, and give no character a meaning in
        // XML.
        if (static_cast<unsigned char>(c) < 0x30 || c == '<' || c == '>')
            result += "&#" + std::to_string(static_cast<int>(c)) + ";";
        else
            result += c;
    }
    return result;
}

const ORVXmlNode* NextElement(const ORVXmlNode* node) {
    while (node && !node->IsElement()) node = node->nextSibling;
    return node;
}

// Without recursion: trees are as deep as the parsers allow.
std::string Write(const ORVXmlNode& root, bool withFills) {
    static constexpr std::string_view kFills[] = {"red", "none", "inherit", "", "#123456", "currentColor"};
    std::string text;
    std::vector<const ORVXmlNode*> open;
    std::size_t written = 0;
    for (const ORVXmlNode* node = &root; node;) {
        text += WriteStartTag(*node);
        if (withFills && !node->Has(AttributeName::kFill)) {
            text.pop_back();
            text.append(" fill='")
                .append(kFills[(written + node->GetName().size()) % std::size(kFills)])
                .append("'>");
        }
        text += Escaped(node->GetText());
        ++written;
        open.push_back(node);
        node = NextElement(node->firstChild);
        while (!node && !open.empty()) {
            text.append("</").append(open.back()->GetName()).append(">");
            if (open.size() > 1) node = NextElement(open.back()->nextSibling);
            open.pop_back();
        }
    }
    return text;
}

}  // namespace

void RequireNoFault(const CheckingGenerator& generator) {
    const std::string fault = generator.GetFault();
    if (!fault.empty()) std::fprintf(stderr, "%s\n", fault.c_str());
    Require(fault.empty());
}

int PrintAllPages(ORVPrintInterpreter& interpreter, ORVPrintGenerator& generator) {
    unsigned int count = 0;
    const int status = interpreter.GetPageCount(count);
    Require(status == 1 || count == 0);
    for (unsigned int page = 1; page <= std::min(count, 3U); ++page) {
        interpreter.SetCurrentPage(page);
        float width = -1.0F, height = -1.0F;
        ORVUnicodeString title;
        Require(interpreter.GetSize(width, height) == 1 && interpreter.GetTitle(title) == 1);
        float xMin = -1.0F, yMin = -1.0F, xMax = -1.0F, yMax = -1.0F;
        interpreter.GetBounds(xMin, yMin, xMax, yMax);
        Require(xMin == 0.0F && yMin == 0.0F);
        Require((xMax == width && yMax == height) || xMax != xMax || yMax != yMax);
    }
    interpreter.SetCurrentPage(0);
    ORVPrintParameters parameters;
    parameters.SetDrawLimit(kFuzzDrawLimit);
    const int result = interpreter.Print(&generator, parameters);
    ORVPrintPropertiesManager::ClearInfos();
    return result;
}

int PrintDocument(std::string_view document, bool usesDom, ORVPrintGenerator& generator) {
    const auto interpreter = Interpret(document, usesDom);
    return PrintAllPages(*interpreter, generator);
}

std::size_t CountVisits(const ORVPrtModel& model, std::size_t limit) {
    std::vector<const ORVPrtGraphicPrimitiveElt*> pending(model.GetImages()->begin(),
                                                          model.GetImages()->end());
    std::size_t count = 0;
    while (!pending.empty() && count < limit) {
        const ORVPrtGraphicPrimitiveElt* one = pending.back();
        pending.pop_back();
        ++count;
        if (const ORVPrtChildList* children = one->GetChildList())
            pending.insert(pending.end(), children->begin(), children->end());
    }
    return count;
}

bool StatesFills(const ORVXmlNode& root) {
    std::vector<const ORVXmlNode*> pending{&root};
    while (!pending.empty()) {
        const ORVXmlNode* node = pending.back();
        pending.pop_back();
        if (!node->Has(AttributeName::kFill)) return false;
        for (const ORVXmlNode* child = NextElement(node->firstChild); child;
             child = NextElement(child->nextSibling))
            pending.push_back(child);
    }
    return true;
}

std::string WriteStartTag(const ORVXmlNode& element) {
    std::string text = "<" + std::string(element.GetName());
    for (std::uint32_t i = 0; i < element.attributeCount; ++i) {
        const ORVXmlAttribute attribute = element.GetAttribute(i);
        text.append(" ").append(attribute.name).append("='").append(Escaped(attribute.value)).append("'");
    }
    return text + ">";
}

std::string WriteElement(const ORVXmlNode& element) { return Write(element, false); }

std::string WriteWithFills(const ORVXmlNode& element) { return Write(element, true); }

FormatRun PrintInFormat(std::string_view formatName, std::string_view bytes) {
    const ORVOutputFormat* format = ORVFindOutputFormat(formatName);
    Require(format != nullptr);
    FuzzBytes choices(bytes);
    const bool usesDom = choices.Flag();
    const ORVFormatOptions options = ChooseFormat(choices);
    const auto sheets = ChooseSheets(choices, options.colourMode, format->makesDots);
    const std::size_t capacity = choices.Below(256);

    const auto interpreter = Interpret(choices.GetRest(), usesDom);
    if (sheets && !IsSmallSheetCount(*interpreter, sheets->layout)) return {};

    FormatRun run;
    LimitedOutput output(capacity < 32 ? std::optional(capacity * 100) : std::nullopt);
    const std::unique_ptr<ORVFormatGenerator> generator = format->create(output, options);
    CheckingGenerator beforeFormat(&generator->Get());
    std::string error;
    int result = 0;
    if (sheets) {
        ORVSheetGenerator sheet(beforeFormat, *sheets);
        CheckingGenerator beforeSheets(&sheet);
        result = PrintAllPages(*interpreter, beforeSheets);
        RequireNoFault(beforeSheets);
        error = sheet.GetError();
    } else {
        result = PrintAllPages(*interpreter, beforeFormat);
    }
    RequireNoFault(beforeFormat);
    if (result == kPageTooLarge || result == kDrawingFailed)
        Require(!error.empty() || !generator->GetError().empty());
    // If a module were missing, nothing would be tested.
    Require(generator->GetError().find("cannot be used") == std::string::npos);
    // The output may also fail during the cleanup after another failure, so `result` need not be
    // kOutputFailed.
    Require(output.HasFailed() ? result != 1 : result != kOutputFailed);
    Require(result == 1 || result == 0 || result == -1 || result == ORVPrintModelRender::kPageWithoutArea ||
            result == ORVPrintModelRender::kTooManyPrimitives ||
            result == ORVPrintModelRender::kTooManyRepeats || result == kOutputFailed ||
            result == kPageTooLarge || result == kDrawingFailed);
    run.succeeded = result == 1;
    run.parts = output.GetPartCount();
    run.output = output.TakeBytes();
    if (run.succeeded) Require(run.parts > 0 && !run.output.empty());
    return run;
}
