// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/html_inspection.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "apps/orvprint/commands/check_command.h"
#include "apps/orvprint/commands/inspector_page.h"
#include "apps/orvprint/process/limits.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "generators/common/ORVDescriptorOutput.h"
#include "generators/common/ORVFileOutput.h"
#include "generators/flatten/ORVFilterImages.h"
#include "generators/formats.h"
#include "library/check/document_order.h"
#include "library/check/model_rows.h"
#include "library/check/standard_check.h"
#include "library/dump/call_dump.h"
#include "library/dump/html_marking.h"
#include "library/dump/json_writer.h"
#include "library/dump/model_dump.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVRef.h"

namespace {

/// A C library stream that writes to an output.
class OutputStream {
public:
    explicit OutputStream(ORVOutput& output)
        : file_(fopencookie(
              &output, "w",
              {.read = nullptr, .write = &OutputStream::Write, .seek = nullptr, .close = nullptr})) {
        if (!file_) throw std::bad_alloc();
    }
    ~OutputStream() { std::fclose(file_); }
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;

    std::FILE* Get() const { return file_; }
    void Put(std::string_view text) { std::fwrite(text.data(), 1, text.size(), file_); }

private:
    static ssize_t Write(void* output, const char* bytes, std::size_t size) {
        return static_cast<ORVOutput*>(output)->Write(bytes, size) == 1 ? static_cast<ssize_t>(size) : 0;
    }

    std::FILE* file_;
};

/// An output that stores its parts separately.
class PartsOutput final : public ORVOutput {
public:
    int BeginPart() override {
        return Try([this] {
            parts_.emplace_back();
            return 1;
        });
    }
    int EndPart() override { return 1; }
    int Commit() override { return 1; }
    const std::vector<std::string>& GetParts() const { return parts_; }

private:
    int Append(const void* bytes, std::size_t size) override {
        return Try([&] {
            parts_.back().append(static_cast<const char*>(bytes), size);
            return 1;
        });
    }

    std::vector<std::string> parts_;
};

/// The SVG generator with the filters in front of it.
class PageDrawing {
public:
    PageDrawing()
        : generator_(ORVFindOutputFormat("svg")->create(output_, {})),
          filters_(generator_ ? generator_->Get() : throw std::bad_alloc(), {}) {}

    ORVPrintGenerator& Get() { return filters_; }
    const std::vector<std::string>& GetPages() const { return output_.GetParts(); }

    /// @param result  of the drawing
    /// @return an exit code; a failure was reported
    int CodeOf(int result, const std::string& name) const {
        if (result == 1) return kExitDone;
        for (const ORVFailure* failure :
             {&generator_->GetFailure(), &filters_.GetFailure(), &output_.GetFailure()})
            if (*failure) return Report(name, *failure);
        if (result == ORVPrintModelRender::kTextNotSet)
            return Report(name, ORVFailure::Of(ORVFailureReason::kTextNotSet));
        return Report(kExitFailed, name, "could not be drawn to its end");
    }

private:
    PartsOutput output_;
    std::unique_ptr<ORVFormatGenerator> generator_;
    ORVFilterImages filters_;
};

bool HasArea(const ORVPrtImageElt& page) {
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    return std::isfinite(width) && std::isfinite(height) && width > 0.0 && height > 0.0;
}

/// Writes the data of the page, drawing by drawing.
class DataWriter {
public:
    DataWriter(JsonWriter& json, const CheckedDocument& document, const ORVRef<const ORVXmlTree>& tree,
               std::string name)
        : json_(json), document_(document), tree_(tree), name_(std::move(name)) {}

    void Begin(const ReadOptions& options);
    /// @return an exit code; a failure was reported
    int PutDrawing(ORVPrintInterpreter& interpreter, const ReadOptions& options);
    void End(const Findings& findings);

private:
    int PutModel(ORVPrintInterpreter& interpreter, const ReadOptions& options);
    int PutCalls(ORVPrintInterpreter& interpreter);
    void PutPages(const std::vector<std::string>& pages, const std::vector<unsigned int>& numbers);
    void PutNumbers(std::string_view key, std::span<const std::uint32_t> numbers);
    void PutPlaces();
    void PutFinding(const Finding& finding);
    void PutText(std::string_view key, std::string_view text) {
        json_.Key(key);
        json_.Text(text);
    }
    /// The root element of a drawing.
    const ORVXmlNode& RootOf(const ReadOptions& options);

    JsonWriter& json_;
    const CheckedDocument& document_;
    const ORVRef<const ORVXmlTree>& tree_;
    const std::string name_;
    std::vector<const ORVXmlNode*> roots_;
    std::size_t drawings_ = 0;  // so far
};

void DataWriter::Begin(const ReadOptions& options) {
    json_.BeginObject();
    PutText("file", name_);
    PutText("interpreter", options.interpreter);
    // In document order, as they are read.
    DocumentOrder order(*document_.root);
    while (const ORVXmlNode* node = order.Next())
        if (document_.fragments.contains(node)) roots_.push_back(node);
    json_.Key("drawings");
    json_.BeginArray();
}

const ORVXmlNode& DataWriter::RootOf(const ReadOptions& options) {
    const bool isFragment = options.interpreter == "SVG2" || !options.fragment.empty();
    return isFragment && drawings_ < roots_.size() ? *roots_[drawings_] : *document_.root;
}

int DataWriter::PutDrawing(ORVPrintInterpreter& interpreter, const ReadOptions& options) {
    json_.BeginObject();
    const ORVXmlNode& root = RootOf(options);
    int code = kExitDone;
    if (interpreter.GetIdentifier() == "SVG2") {
        PutNumbers("elementNumbers", CountStandardElements(tree_, root, *document_.root));
        code = PutCalls(interpreter);
    } else {
        code = PutModel(interpreter, options);
    }
    json_.EndObject();
    json_.LineBreak();
    ++drawings_;
    return code;
}

int DataWriter::PutModel(ORVPrintInterpreter& interpreter, const ReadOptions& options) {
    ORVRef<const ORVPrtModel> model;
    const int result = interpreter.GetModel(model);
    if (!model) return result == 1 ? ReportOutOfMemory(name_) : Report(kExitNoPage, name_, "has no page");
    if (const ORVFailure failure = WhyNotDumped(*model)) return Report(name_, failure);
    json_.Key("pages");
    DumpPages(*model, json_);
    const ModelRows rows = CountModelRows(*model, RootOf(options), *document_.root);
    PutNumbers("elements", rows.elements);

    std::vector<unsigned int> pages;
    std::vector<std::span<const std::uint32_t>> origins;
    for (std::size_t i = 0; i < model->GetImages()->size(); ++i) {
        if (!HasArea(*(*model->GetImages())[i])) continue;
        pages.push_back(static_cast<unsigned int>(i + 1));
        origins.emplace_back(rows.ofOrigins[i]);
    }
    PageDrawing drawing;
    if (!pages.empty()) {
        MarkingGenerator marking(drawing.Get(), std::move(origins));
        ORVPrintParameters parameters;
        parameters.SetPages(pages);
        if (const int code = drawing.CodeOf(interpreter.Print(&marking, parameters), name_);
            code != kExitDone)
            return code;
    }
    PutPages(drawing.GetPages(), pages);
    return kExitDone;
}

int DataWriter::PutCalls(ORVPrintInterpreter& interpreter) {
    PageDrawing drawing;
    json_.Key("calls");
    CallDump dump(json_);
    MarkingGenerator marking(drawing.Get(), dump);
    const int result = interpreter.Print(&marking, {});
    dump.Finish(result);
    if (const int code = drawing.CodeOf(result, name_); code != kExitDone) return code;
    PutNumbers("elements", marking.GetElements());
    std::vector<unsigned int> numbers;
    for (const std::string& page : drawing.GetPages())
        numbers.push_back(static_cast<unsigned int>(&page - drawing.GetPages().data()) + 1);
    PutPages(drawing.GetPages(), numbers);
    return kExitDone;
}

/// @param numbers  page number of each, from 1
void DataWriter::PutPages(const std::vector<std::string>& pages, const std::vector<unsigned int>& numbers) {
    json_.Key("drawn");
    json_.BeginArray();
    for (std::size_t i = 0; i < pages.size() && i < numbers.size(); ++i) {
        json_.BeginObject();
        json_.Key("page");
        json_.Integer(numbers[i]);
        PutText("svg", pages[i]);
        json_.EndObject();
    }
    json_.EndArray();
}

void DataWriter::PutNumbers(std::string_view key, std::span<const std::uint32_t> numbers) {
    json_.Key(key);
    json_.BeginArray();
    for (const std::uint32_t number : numbers) json_.Integer(number);
    json_.EndArray();
}

/// For each element: line, column, number of elements inside it, and index of its name.
void DataWriter::PutPlaces() {
    json_.Key("places");
    json_.BeginArray();
    std::unordered_map<std::string_view, std::size_t> numbersOfNames;
    std::vector<std::string_view> names;
    std::vector<std::size_t> named;  // index of the name, for each element
    std::vector<std::uint32_t> held;
    std::vector<std::pair<const ORVXmlNode*, std::size_t>> open;  // an element's next child, and its index
    const auto enter = [&](const ORVXmlNode& element) {
        open.emplace_back(element.firstChild, held.size());
        held.push_back(0);
        const auto [name, isNew] = numbersOfNames.try_emplace(element.GetName(), names.size());
        if (isNew) names.push_back(name->first);
        named.push_back(name->second);
    };
    enter(*document_.root);
    while (!open.empty()) {
        auto& [next, number] = open.back();
        if (!next) {
            held[number] = static_cast<std::uint32_t>(held.size() - number - 1);
            open.pop_back();
            continue;
        }
        const ORVXmlNode& child = *next;
        next = child.nextSibling;
        if (child.IsElement()) enter(child);
    }
    for (std::size_t i = 0; i < held.size(); ++i) {
        const bool isKnown = document_.places && i < document_.places->size();
        const ORVXmlPlace place = isKnown ? (*document_.places)[i] : ORVXmlPlace();
        json_.Integer(static_cast<long long>(place.line));
        json_.Integer(static_cast<long long>(place.column));
        json_.Integer(held[i]);
        json_.Integer(static_cast<long long>(named[i]));
    }
    json_.EndArray();
    json_.Key("names");
    json_.BeginArray();
    for (const std::string_view name : names) json_.Text(name);
    json_.EndArray();
}

void DataWriter::PutFinding(const Finding& finding) {
    json_.LineBreak();
    json_.BeginObject();
    const FindingKind& kind = GetFindingKind(finding.code);
    PutText("code", kind.name);
    PutText("title", kind.title);
    json_.Key("line");
    json_.Integer(finding.line);
    json_.Key("column");
    json_.Integer(finding.column);
    PutText("element", finding.element);
    PutText("attribute", finding.attribute);
    PutText("value", finding.value);
    PutText("message", finding.message);
    json_.EndObject();
}

void DataWriter::End(const Findings& findings) {
    json_.EndArray();
    PutPlaces();
    json_.Key("total");
    json_.Integer(static_cast<long long>(findings.GetTotal()));
    json_.Key("findings");
    json_.BeginArray();
    for (const Finding& finding : findings.GetKept()) PutFinding(finding);
    json_.EndArray();
    json_.EndObject();
}

std::unique_ptr<ORVOutput> OpenOutput(const std::string& output, const std::string& input) {
    if (output == "-") return std::make_unique<ORVDescriptorOutput>(STDOUT_FILENO);
    auto file = std::make_unique<ORVFileOutput>(output, false);
    file->Protect(input == "-" ? "/dev/stdin" : input);
    return file;
}

/// The input, its document and its findings, kept while the drawing is read again.
class HtmlInspection {
public:
    HtmlInspection(const std::string& input, const ReadOptions& options, ORVOutput& output)
        : input_(input), options_(options), output_(output) {}

    int Run(const CheckedDocument& document, const ORVRef<const ORVXmlTree>& tree, const Findings& findings) {
        const std::string name = DisplayName(input_, "standard input");
        OutputStream stream(output_);
        stream.Put(kInspectorHead);
        JsonWriter json(stream.Get(), true);
        DataWriter data(json, document, tree, name);
        data.Begin(options_);
        const int code = OpenForInspection(input_, options_, [&](ORVPrintInterpreter& interpreter) {
            return data.PutDrawing(interpreter, options_);
        });
        if (code != kExitDone) return code;
        data.End(findings);
        json.Flush();
        stream.Put(kInspectorTail);
        return std::fflush(stream.Get()) == 0 ? static_cast<int>(kExitDone)
                                              : static_cast<int>(kExitUnwritable);
    }

private:
    const std::string& input_;
    const ReadOptions& options_;
    ORVOutput& output_;
};

int Unwritable(const ORVOutput& output, const std::string& name) {
    return Report(DisplayName(name, "standard output"),
                  output.GetFailure() ? output.GetFailure() : ORVFailure::OutOfMemory());
}

int Inspect(const std::string& input, const ReadOptions& options, const std::string& outputName) {
    const std::unique_ptr<ORVOutput> output = OpenOutput(outputName, input);
    if (auto* file = dynamic_cast<ORVFileOutput*>(output.get()); file && file->Prepare() != 1)
        return Unwritable(*output, outputName);
    if (output->BeginPart() != 1) return Unwritable(*output, outputName);
    HtmlInspection inspection(input, options, *output);
    const int code = CheckBeforeInspection(
        input, options,
        [&](const CheckedDocument& document, const ORVRef<const ORVXmlTree>& tree, const Findings& findings) {
            return inspection.Run(document, tree, findings);
        });
    if (output->GetFailure()) return Unwritable(*output, outputName);
    if (code != kExitDone) return code;
    if (auto* file = dynamic_cast<ORVFileOutput*>(output.get()))
        for (const FileSet::Identity& read : FilesOfDrawings().GetFiles()) file->Protect(read);
    if (output->EndPart() != 1 || output->Commit() != 1) return Unwritable(*output, outputName);
    return kExitDone;
}

}  // namespace

int RunHtmlInspection(const std::string& input, const ReadOptions& options, const std::string& output) {
    const std::string name = DisplayName(input, "standard input");
    DrawingTime time;
    time.Begin(name);
    try {
        return Inspect(input, options, output);
    } catch (const std::bad_alloc&) {
        return ReportOutOfMemory(name);
    }
}
