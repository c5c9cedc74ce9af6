// Every request for memory is refused once, and once with all that follow. Whatever that hits, nothing is
// thrown at the host, nothing is lost, no file is half written, and the statuses tell.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "apps/orvprint/json_writer.h"
#include "apps/orvprint/model_dump.h"
#include "generators/common/ORVFileOutput.h"
#include "generators/common/ORVGeneratorSequence.h"
#include "generators/common/ORVOutput.h"
#include "generators/formats.h"
#include "generators/sheet/ORVSheetGenerator.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVDOMXml.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlFragments.h"
#include "tests/faults/failing_allocator.h"
#include "tests/support/model_sketch.h"
#include "tests/support/sample_images.h"
#include "tests/support/scratch_folder.h"

namespace {

namespace fs = std::filesystem;
using Refuses = FailingAllocator::Refuses;
using Granted = FailingAllocator::Granted;

/// One of everything that allocates: every element, every kind of picture, texts longer than strings keep in
/// place, two pages.
std::string Document() {
    const std::string png = ToBase64(SamplePng(3, 2)), jpeg = ToBase64(SampleJpeg(8, 8)),
                      bmp = ToBase64(SampleBmp(2, 2));
    return R"svg(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink">
<svg id="the-first-of-two-pages" width="60mm" height="40mm" viewBox="0 0 200 130">
<title>Everything, and more: ąbč Ελληνικά</title><desc>One of each kind of element</desc>
<defs><symbol id="a-symbol-with-a-name" viewBox="0 0 10 10"><circle cx="5" cy="5" r="4"/><desc>a bolt and a nut</desc></symbol>
<marker id="tip" refX="3" refY="2" markerWidth="6" markerHeight="4"><polygon points="0,0 6,2 0,4"/></marker>
<linearGradient id="fade"><stop offset="0" stop-color="red"/></linearGradient>
<clipPath id="hole"><rect width="5" height="5"/></clipPath>
<pattern id="tiles" width="4" height="4" patternUnits="userSpaceOnUse"><image width="3" height="2" xlink:href="data:image/png;base64,)svg" +
           png + R"svg("/></pattern>
<g id="a-leg-of-the-table"><line x1="0" y1="0" x2="0" y2="30" fill="none" stroke="black"/></g></defs>
<g id="a-group-of-shapes" fill="#0a0" stroke="navy" stroke-width="0.5mm" opacity="0.5"><title>Shapes of all kinds there are</title>
<rect x="20" y="30" width="10%" height="10%" rx="4" clip-path="url(#hole)"/><circle cx="80" cy="60" r="5%"/>
<ellipse cx="120" cy="60" rx="20" ry="12" style="fill:none;stroke:red;stroke-dasharray:5 3 2;stroke-linecap:round"/>
<line x1="10" y1="10" x2="60" y2="90" marker-end="url(#tip)"/>
<polyline fill="none" points="10,100 20,110 30 100 40" marker-mid="url(#tip)" transform="translate(5) rotate(3) skewX(1)"/>
<polygon fill="url(#tiles)" points="150 20 190 20 170 50"/></g>
<use xlink:href="#a-symbol-with-a-name" x="150" y="40" width="30" height="20" fill="grey"/>
<use xlink:href="#a-leg-of-the-table" x="180" y="10" height="60" width="4" stroke="black"/>
<use xlink:href="#a-leg-of-the-table" x="185" y="10"/>
<path id="a-path-with-holes" fill="teal" fill-rule="evenodd" d="M20 90h40v30H20zM30 100l20 0 0 10-20 0z" marker-start="url(#tip)"><desc>a frame of wood</desc></path>
<path fill="none" stroke="black" d="M100 90C110 70 130 70 140 90s20 20 40 0q10-20 20 0t20 0A20 10 30 0 1 260 90a5 0 0 0 0 10 10"/>
<path fill="url(#fade)" d="M1 1h9v9z"/>
<a xlink:href="#a-group-of-shapes" xlink:show="new"><text x="20" y="120" dx="2" dy="3" fill="black" font-size="14" text-anchor="middle" letter-spacing="1pt">Hello, world of long texts
<desc>a greeting to all readers</desc></text></a>
<a xlink:href="http://example.org/a/long/address"><text x="60" y="126" fill="navy" stroke="red" font-family="serif">Ελλ שלום fi</text></a>
<text fill="black" style="font-weight:bold;writing-mode:tb;text-anchor:end" x="10%" y="10%">  down </text>
<svg x="5" y="5" width="20" height="20" viewBox="0 0 2 2"><rect width="1" height="1" fill="red" stroke="none"/></svg>
<image x="150" y="80" width="20" height="10" xlink:href="data:image/png;base64,)svg" +
           png + R"svg("/>
<image x="160" y="90" width="20" height="10" xlink:href="data:image/jpeg;base64,)svg" +
           jpeg + R"svg("/>
<image x="170" y="100" width="20" height="10" transform="rotate(10)" xlink:href="data:image/bmp;base64,)svg" +
           bmp + R"svg("/>
</svg>
<svg width="20mm" height="10mm"><title>The second page of two pages</title><rect width="9" height="9" fill="red" opacity="0.4"/></svg>
</svg>)svg";
}

/// A document that embeds drawings.
std::string Report() {
    return "<report><chapter name='the first of them'>" + Document() + "</chapter></report>";
}

// ---- every request in turn ----

/// What is being tried, for what ends the program.
std::array<char, 256> trial{};

[[noreturn]] void TellAndAbort() {
    std::fprintf(stderr, "ended by an exception or std::terminate: %s\n", trial.data());
    std::abort();
}

bool TriesAll() { return std::getenv("ORV_FAULTS_ALL") != nullptr; }

/// Calls `attempt` with each request refused, until nothing is refused any more. The attempt runs with
/// refusals, is judged by `judge` without them, and must leave no block behind.
/// @param attempt  sets things up within Granted; an exception that it lets out is a failure
/// @param judge    called after each attempt
void WithEachRequestRefused(const std::string& name, const std::function<void()>& attempt,
                            const std::function<void()>& judge) {
    std::set_terminate(TellAndAbort);
    // Twice, so that what is made on first use is there.
    for (int i = 0; i < 3; ++i) {
        attempt();
        judge();
    }
    const std::int64_t before = FailingAllocator::GetLiveBlocks();

    // All of the first, then one of so many that the suite stays quick.
    constexpr std::uint64_t kAllOfFirst = 150, kTrialsBehind = 150;
    std::uint64_t trials = 0, requests = 0;
    for (const Refuses refuses : {Refuses::kOne, Refuses::kAllFrom}) {
        std::uint64_t step = 1;
        for (std::uint64_t request = 1;; request += step) {
            std::snprintf(trial.data(), trial.size(), "%s, request %llu%s", name.c_str(),
                          static_cast<unsigned long long>(request),
                          refuses == Refuses::kOne ? "" : " and all that follow");
            bool isThrown = false;
            FailingAllocator::Begin(request, refuses);
            try {
                attempt();
            } catch (...) {
                isThrown = true;
            }
            FailingAllocator::End();
            const bool isRefused = FailingAllocator::GetRefused() > 0;
            requests = std::max(requests, FailingAllocator::GetRequests());
            const std::int64_t live = FailingAllocator::GetLiveBlocks();
            EXPECT_FALSE(isThrown) << trial.data();
            judge();
            EXPECT_EQ(FailingAllocator::GetLiveBlocks(), before)
                << trial.data() << " (" << live << " at once)";
            if (testing::Test::HasFailure()) {
                ADD_FAILURE() << trial.data();
                return;
            }
            ++trials;
            if (!isRefused) break;
            if (!TriesAll() && request >= kAllOfFirst)
                step = std::max<std::uint64_t>((requests - kAllOfFirst) / kTrialsBehind, 1);
        }
    }
    std::printf("%s: %llu requests, %llu trials\n", name.c_str(), static_cast<unsigned long long>(requests),
                static_cast<unsigned long long>(trials));
}

// ---- reading and building ----

enum class Source { kFile, kMemory, kDOMElement, kLightElement };

struct ReadRow {
    const char* name;
    const char* interpreter;
    Source source;
    bool withDOMParser;
};
constexpr std::array kReadRows{
    ReadRow{"FileByLightParser", "SVG", Source::kFile, false},
    ReadRow{"FileByDOMParser", "SVG", Source::kFile, true},
    ReadRow{"MemoryByLightParser", "SVG", Source::kMemory, false},
    ReadRow{"LightElement", "SVG", Source::kLightElement, false},
    ReadRow{"DOMElement", "SVG", Source::kDOMElement, true},
    ReadRow{"LightFragment", "QVXML", Source::kLightElement, false},
    ReadRow{"DOMFragment", "QVXML", Source::kDOMElement, true},
};

/// A document as a host hands it over.
class Input {
public:
    explicit Input(const ReadRow& row) : text_(row.interpreter[0] == 'Q' ? Report() : Document()) {
        if (row.withDOMParser)
            unsetenv("PRINT_WITHOUT_DOM_PARSER");
        else
            setenv("PRINT_WITHOUT_DOM_PARSER", "1", 1);
        switch (row.source) {
            case Source::kFile:
                path_ = folder_.PathOf("drawing-with-a-long-name.svg");
                std::ofstream(path_, std::ios::binary) << text_;
                input_ = ORVRef<ORVPrintInput>(new ORVPrintInputFileStream(path_));
                break;
            case Source::kMemory: input_ = ORVRef<ORVPrintInput>(new ORVPrintInputMemoryStream(text_)); break;
            case Source::kDOMElement:
                BuildParser(text_, "SVG", dom_);
                dom_ = ORVIDOMElement_var(dom_.GetTree(), FindSvgElements(dom_.GetNode()).front());
                input_ = ORVRef<ORVPrintInput>(new ORVPrintInputXMLElement(dom_));
                break;
            case Source::kLightElement:
                ORVLightXmlParser().Parse({text_.data(), text_.size()}, light_);
                light_ = ORVLightXmlElement(light_.GetTree(), FindSvgElements(light_.GetNode()).front());
                input_ = ORVRef<ORVPrintInput>(new ORVPrintInputXMLElement(&light_));
                break;
        }
    }
    ORVPrintInput* Get() const { return input_.get(); }

private:
    ScratchFolder folder_;
    std::string text_;
    std::string path_;
    ORVLightXmlElement light_;
    ORVIDOMElement_var dom_;
    ORVRef<ORVPrintInput> input_;
};

/// Notes all pages as text, and whether something was left out of the model.
class Sketcher final : public ORVPrintModelInspector {
public:
    void Inspect(const ORVPrtModel& model) override {
        const Granted granted;
        sketch_.clear();
        for (const ORVPrtImageElt* page : *model.GetImages())
            sketch_ += PaintedSketchOfChildren(*page) + "\n";
        isMemorySpent_ = model.GetBudget().IsMemorySpent();
    }
    const std::string& GetSketch() const { return sketch_; }
    bool IsMemorySpent() const { return isMemorySpent_; }

private:
    std::string sketch_;
    bool isMemorySpent_ = false;
};

/// What an interpreter has of its document.
Sketcher Sketch(ORVPrintInterpreter& interpreter) {
    Sketcher sketcher;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&sketcher);
    interpreter.Print(nullptr, parameters);
    return sketcher;
}

/// Where two texts begin to differ.
std::string DifferenceOf(const std::string& expected, const std::string& actual) {
    const auto at = static_cast<std::size_t>(
        std::mismatch(expected.begin(), expected.end(), actual.begin(), actual.end()).first -
        expected.begin());
    const std::size_t from = at > 60 ? at - 60 : 0;
    return "expected ..." + expected.substr(from, 160) + "...\nbut it is ..." +
           actual.substr(std::min(from, actual.size()), 160);
}

class ReadingFaults : public testing::TestWithParam<ReadRow> {};

TEST_P(ReadingFaults, EndInAStatus) {
    const ReadRow& row = GetParam();
    const Input input(row);
    const std::string name = row.interpreter;
    const ORVUnicodeString path("a/path/of/some/length.svg");
    std::string expected;
    std::unique_ptr<ORVPrintInterpreter> interpreter;
    std::string error;
    std::optional<int> built;

    WithEachRequestRefused(
        row.name,
        [&] {
            built.reset();
            interpreter = ORVPrintModule::CreateInterpreter(name, input.Get(), error);
            if (!interpreter) return;
            ORVPrintModule::SetCurrentPath(name, *interpreter, path);
            unsigned int count = 0;
            built = interpreter->GetPageCount(count);
            float width = 0.0F, height = 0.0F;
            interpreter->GetSize(width, height);
            ORVUnicodeString title;
            interpreter->GetTitle(title);
        },
        [&] {
            if (!interpreter) {
                EXPECT_FALSE(error.empty());
            } else if (expected.empty()) {
                ASSERT_EQ(built, 1);
                expected = Sketch(*interpreter).GetSketch();
                ASSERT_GT(expected.size(), 500U);
            } else {
                // What failed leaves no pages; what could not be allocated is missing, and the model says so.
                const Sketcher made = Sketch(*interpreter);
                EXPECT_TRUE(made.GetSketch() == expected ||
                            (*built == 1 ? made.IsMemorySpent() : made.GetSketch().empty()))
                    << "built: " << *built << "\n"
                    << DifferenceOf(expected, made.GetSketch());
            }
            interpreter.reset();
            std::string().swap(error);
            // The same input serves again.
            const auto again = ORVPrintModule::CreateInterpreter(name, input.Get(), error);
            ASSERT_TRUE(again) << error;
            const Sketcher made = Sketch(*again);
            EXPECT_TRUE(made.GetSketch() == expected) << DifferenceOf(expected, made.GetSketch());
            EXPECT_FALSE(made.IsMemorySpent());
        });
}

INSTANTIATE_TEST_SUITE_P(Inputs, ReadingFaults, testing::ValuesIn(kReadRows),
                         [](const auto& row) { return std::string(row.param.name); });

// ---- printing ----

/// Takes bytes without a request for memory.
class RoomyOutput final : public ORVOutput {
public:
    RoomyOutput() { bytes_.reserve(std::size_t{8} << 20U); }
    int BeginPart() override { return 1; }
    int Write(const void* bytes, std::size_t size) override {
        if (bytes_.size() + size > bytes_.capacity()) return 0;
        bytes_.append(static_cast<const char*>(bytes), size);
        return 1;
    }
    int EndPart() override { return 1; }
    int Commit() override { return 1; }
    void Clear() { bytes_.clear(); }
    const std::string& GetBytes() const { return bytes_; }

private:
    std::string bytes_;
};

struct PrintRow {
    const char* name;
    const char* format;
    unsigned int threads;
    bool isPoster;
    unsigned int pagesPerSheet;
};
constexpr std::array kPrintRows{
    PrintRow{"pdf", "pdf", 1, false, 1},          PrintRow{"ps", "ps", 1, false, 1},
    PrintRow{"eps", "eps", 1, false, 1},          PrintRow{"svg", "svg", 1, false, 1},
    PrintRow{"png", "png", 1, false, 1},          PrintRow{"pngByThreads", "png", 3, false, 1},
    PrintRow{"tiff", "tiff", 1, false, 1},        PrintRow{"pwg", "pwg", 1, false, 1},
    PrintRow{"pdfPoster", "pdf", 1, true, 1},     PrintRow{"svgPoster", "svg", 1, true, 1},
    PrintRow{"pngSeveralUp", "png", 1, false, 2},
};

ORVSheetOptions SheetOptions(const PrintRow& row) {
    ORVSheetOptions options;
    if (!row.isPoster && row.pagesPerSheet == 1) return options;
    options.layout.paper = ORVPaperSize{200.0, 150.0};
    options.layout.margins = ORVSheetMargins{9.0, 9.0, 9.0, 9.0};
    options.layout.isPoster = row.isPoster;
    options.layout.pagesPerSheet = row.pagesPerSheet;
    options.colourMode = ORVColourMode::kGrey;
    if (row.isPoster) options.layout.scale = {ORVSheetScale::Kind::kFactor, 1.5};
    return options;
}

class PrintingFaults : public testing::TestWithParam<PrintRow> {
protected:
    PrintingFaults() {
        std::string error;
        interpreter_ = ORVPrintModule::CreateInterpreter("SVG", input_.Get(), error);
        options_.dotsPerInch = 45.0;
        options_.threads = GetParam().threads;
        options_.creationTime = 0;
    }

    /// Prints all there is, as the command does. @return 1 when everything worked
    int Print(ORVOutput& output) {
        const PrintRow& row = GetParam();
        const auto generator = ORVFindOutputFormat(row.format)->create(output, options_);
        if (!generator) return 0;
        std::optional<ORVSheetGenerator> sheets;
        ORVPrintGenerator* target = &generator->Get();
        if (row.isPoster || row.pagesPerSheet > 1) {
            const Granted granted;
            target = &sheets.emplace(*target, SheetOptions(row));
        }
        ORVGeneratorSequence sequence(*target, 0);
        const int status = interpreter_->Print(&sequence, ORVPrintParameters());
        const int ended = sequence.Finish();
        return status == 1 ? ended : status;
    }

    const Input input_{kReadRows[0]};
    std::unique_ptr<ORVPrintInterpreter> interpreter_;
    ORVFormatOptions options_;
};

TEST_P(PrintingFaults, EndInAStatus) {
    ASSERT_TRUE(interpreter_);
    RoomyOutput output;
    std::string expected;
    int status = 0;
    WithEachRequestRefused(
        GetParam().name,
        [&] {
            output.Clear();
            status = Print(output);
        },
        [&] {
            if (expected.empty()) expected = output.GetBytes();
            EXPECT_TRUE(status != 1 || output.GetBytes() == expected) << "something else was printed";
            EXPECT_GT(expected.size(), 100U);
            output.Clear();
            EXPECT_EQ(Print(output), 1);
            EXPECT_TRUE(output.GetBytes() == expected) << "something else is printed afterwards";
        });
}

INSTANTIATE_TEST_SUITE_P(Formats, PrintingFaults, testing::ValuesIn(kPrintRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
