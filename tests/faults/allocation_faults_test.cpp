// SPDX-License-Identifier: Apache-2.0

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
#include <map>
#include <memory>
#include <new>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "apps/orvprint/commands/json_writer.h"
#include "apps/orvprint/commands/model_dump.h"
#include "generators/common/ORVFileOutput.h"
#include "generators/common/ORVGeneratorSequence.h"
#include "generators/common/ORVOutput.h"
#include "generators/formats.h"
#include "generators/sheet/ORVSheetGenerator.h"
#include "platform/model/ORVPrtGroupElt.h"
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
#include "tests/faults/documents.h"
#include "tests/faults/failing_allocator.h"
#include "tests/faults/failing_threads.h"
#include "tests/support/model_sketch.h"
#include "tests/support/named_rows.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_folder.h"

namespace {

namespace fs = std::filesystem;
using Refuses = FailingAllocator::Refuses;
using Granted = FailingAllocator::Granted;

// ---- every request in turn ----

/// What is being tried, for what ends the program.
std::array<char, 256> trial{};

[[noreturn]] void TellAndAbort() {
    std::fprintf(stderr, "ended by an exception or std::terminate: %s\n", trial.data());
    std::abort();
}

bool TriesAll() { return std::getenv("ORV_FAULTS_ALL") != nullptr; }

/// How many requests are refused where not all are.
struct Trials {
    std::uint64_t first = 100;  ///< all of the first
    std::uint64_t behind = 60;  ///< about so many of the others
};

/// Calls `attempt` with each request refused, until nothing is refused any more. The attempt runs with
/// refusals, is judged by `judge` without them, and must leave no block behind.
/// @param attempt  sets things up within Granted; an exception that it lets out is a failure
/// @param judge    called after each attempt
void WithEachRequestRefused(const std::string& name, const std::function<void()>& attempt,
                            const std::function<void()>& judge, const Trials& plan = {}) {
    std::set_terminate(TellAndAbort);
    // Some times, so that what is made on first use is there.
    for (int i = 0; i < 3; ++i) {
        attempt();
        judge();
    }
    const std::int64_t before = FailingAllocator::GetLiveBlocks();

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
            // Then one of so many, that the suite stays quick.
            if (!TriesAll() && request >= plan.first)
                step = std::max<std::uint64_t>((requests - std::min(requests, plan.first)) / plan.behind, 1);
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
    explicit Input(const ReadRow& row)
        : Input(row, row.interpreter[0] == 'Q' ? EmbeddingDocument() : DocumentOfEverything()) {}
    Input(const ReadRow& row, std::string text)
        : parser_("PRINT_WITHOUT_DOM_PARSER", row.withDOMParser ? nullptr : "1"), text_(std::move(text)) {
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
    const ScopedEnvironment parser_;
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

INSTANTIATE_TEST_SUITE_P(Inputs, ReadingFaults, testing::ValuesIn(kReadRows), kNameOfRow);

// ---- printing ----

/// Takes bytes without a request for memory.
class RoomyOutput final : public ORVOutput {
public:
    RoomyOutput() { bytes_.reserve(std::size_t{8} << 20U); }
    int BeginPart() override { return 1; }
    int EndPart() override { return 1; }
    int Commit() override { return 1; }
    void Clear() { bytes_.clear(); }
    const std::string& GetBytes() const { return bytes_; }

private:
    int Append(const void* bytes, std::size_t size) override {
        if (bytes_.size() + size > bytes_.capacity()) return 0;
        bytes_.append(static_cast<const char*>(bytes), size);
        return 1;
    }

    std::string bytes_;
};

struct PrintRow {
    const char* name;
    const char* format;
    unsigned int threads = 1;
    bool isPoster = false;
    unsigned int pagesPerSheet = 1;
    double dotsPerInch = 45.0;
    bool isLarge = false;  ///< so much content that it is packed by a thread
};
constexpr std::array kPrintRows{
    PrintRow{"pdf", "pdf"},
    PrintRow{"ps", "ps"},
    PrintRow{"eps", "eps"},
    PrintRow{"svg", "svg"},
    PrintRow{"png", "png"},
    PrintRow{"tiff", "tiff"},
    PrintRow{"pwg", "pwg"},
    PrintRow{"pdfPoster", "pdf", 1, true},
    PrintRow{"svgPoster", "svg", 1, true},
    PrintRow{"pngSeveralUp", "png", 1, false, 2},
    PrintRow{"pdfByThread", "pdf", 1, false, 1, 45.0, true},
    PrintRow{"pngByThreads", "png", 3, false, 1, 220.0},
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
    PrintingFaults() : input_(kReadRows[0], GetParam().isLarge ? LargeDocument() : DocumentOfEverything()) {
        std::string error;
        interpreter_ = ORVPrintModule::CreateInterpreter("SVG", input_.Get(), error);
        options_.dotsPerInch = GetParam().dotsPerInch;
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
        const Granted granted;
        error_ = generator->GetError();
        return status == 1 ? ended : status;
    }

    Trials GetPlan() const {
        const bool isCairo =
            GetParam().format == std::string("ps") || GetParam().format == std::string("eps");
        const bool isSlow = isCairo || GetParam().isLarge || GetParam().threads > 1;
#ifdef ORV_SANITIZED
        constexpr std::uint64_t kOfSlow = 8;
#else
        constexpr std::uint64_t kOfSlow = 30;
#endif
        return isSlow ? Trials{1, kOfSlow} : Trials();
    }

    const Input input_;
    std::unique_ptr<ORVPrintInterpreter> interpreter_;
    ORVFormatOptions options_;
    std::string error_;  // of the last print
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
            EXPECT_GT(expected.size(), 100U);
            EXPECT_TRUE(status != 1 || output.GetBytes() == expected) << "something else was printed";
            output.Clear();
            EXPECT_EQ(Print(output), 1);
            EXPECT_TRUE(output.GetBytes() == expected) << "something else is printed afterwards";
        },
        GetPlan());
}

TEST_P(PrintingFaults, WithoutThreadsPrintAllTheSameOrSayWhyNot) {
    ASSERT_TRUE(interpreter_);
    RoomyOutput expected, output;
    ASSERT_EQ(Print(expected), 1);
    int status = 0, refused = 0;
    {
        const NoThreads none;
        status = Print(output);
        refused = NoThreads::GetRefused();
    }
    EXPECT_TRUE(status != 1 || output.GetBytes() == expected.GetBytes());
    EXPECT_TRUE(status == 1 || refused > 0) << status;
    EXPECT_EQ(error_, status == 1 ? "" : "a thread could not be started");
    EXPECT_TRUE(refused > 0 || (!GetParam().isLarge && GetParam().threads == 1));
    output.Clear();
    EXPECT_EQ(Print(output), 1);
    EXPECT_TRUE(output.GetBytes() == expected.GetBytes());
}

INSTANTIATE_TEST_SUITE_P(Formats, PrintingFaults, testing::ValuesIn(kPrintRows), kNameOfRow);

// ---- files ----

/// Names and contents of all files of a folder, hidden ones too.
std::map<std::string, std::string> FilesOf(const fs::path& folder) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::directory_iterator(folder)) {
        std::ostringstream text;
        text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        files[entry.path().filename()] = text.str();
    }
    return files;
}

class FileFaults : public PrintingFaults {};

TEST_P(FileFaults, LeaveWholeFilesOrNone) {
    ASSERT_TRUE(interpreter_);
    const ScratchFolder folder;
    const std::string path = folder.PathOf(std::string("a-drawing-with-a-long-name.") + GetParam().format);
    const bool isNumbered = ORVFindOutputFormat(GetParam().format)->onePageAPart;
    std::map<std::string, std::string> expected;
    int status = 0;
    std::string error;
    WithEachRequestRefused(
        std::string("file ") + GetParam().name,
        [&] {
            std::optional<ORVFileOutput> output;
            {
                const Granted granted;
                output.emplace(path, isNumbered);
            }
            status = output->Prepare() == 1 && Print(*output) == 1 ? output->Commit() : 0;
        },
        [&] {
            const auto files = FilesOf(folder.Path());
            if (expected.empty()) expected = files;
            EXPECT_EQ(expected.size(), isNumbered ? 2U : 1U);
            for (const auto& [name, bytes] : files)
                EXPECT_TRUE(expected.contains(name) && expected[name] == bytes) << name << " is half a file";
            EXPECT_TRUE(status != 1 || files.size() == expected.size());
            for (const auto& [name, bytes] : files) fs::remove(folder.Path() / name);
        });
}

INSTANTIATE_TEST_SUITE_P(Formats, FileFaults,
                         testing::Values(PrintRow{"pdf", "pdf"}, PrintRow{"svg", "svg"},
                                         PrintRow{"png", "png"}),
                         kNameOfRow);

// ---- models ----

/// Calls a function with the model of the whole document.
class ModelUse final : public ORVPrintModelInspector {
public:
    explicit ModelUse(std::function<void(const ORVPrtModel&)> use) : use_(std::move(use)) {}
    void Inspect(const ORVPrtModel& model) override { use_(model); }

private:
    std::function<void(const ORVPrtModel&)> use_;
};

void UseModel(const std::function<void(const ORVPrtModel&)>& use) {
    const Input input(kReadRows[0]);
    std::string error;
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG", input.Get(), error);
    ASSERT_TRUE(interpreter);
    ModelUse inspector(use);
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&inspector);
    EXPECT_EQ(interpreter->Print(nullptr, parameters), 1);
}

TEST(ModelFaults, DuplicateIsWholeOrNull) {
    UseModel([](const ORVPrtModel& model) {
        const ORVPrtGraphicPrimitiveElt& page = *model.GetImages()->front();
        ORVRef<ORVPrtGraphicPrimitiveElt> duplicate;
        const std::string expected = SketchOf(page);
        WithEachRequestRefused(
            "duplicate", [&] { duplicate = ORVRef<ORVPrtGraphicPrimitiveElt>(page.Duplicate()); },
            [&] {
                EXPECT_TRUE(duplicate || FailingAllocator::GetRefused() > 0);
                EXPECT_TRUE(!duplicate || SketchOf(*duplicate) == expected);
                duplicate = nullptr;
            });
    });
}

/// A chain of groups, each of which holds some more behind the next one.
ORVRef<ORVPrtGroupElt> Chain(std::size_t length, std::size_t others) {
    ORVRef<ORVPrtGroupElt> top(new ORVPrtGroupElt);
    for (std::size_t i = 1; i < length; ++i) {
        const ORVRef<ORVPrtGroupElt> above(new ORVPrtGroupElt);
        above->AddChild(top.get());
        for (std::size_t other = 0; other < others; ++other)
            above->AddChild(ORVRef<ORVPrtGroupElt>(new ORVPrtGroupElt).get());
        top = above;
    }
    return top;
}

TEST(ModelFaults, TreesGoWithoutMemory) {
    struct Row {
        std::size_t length, others;
    };
    for (const Row& row : {Row{1, 0}, Row{100'000, 0}, Row{100'000, 1}, Row{2, 100'000}, Row{1'000, 200}}) {
        const std::int64_t before = FailingAllocator::GetLiveBlocks();
        ORVRef<ORVPrtGroupElt> tree = Chain(row.length, row.others);
        FailingAllocator::Begin(1, Refuses::kAllFrom);
        tree = nullptr;
        FailingAllocator::End();
        EXPECT_EQ(FailingAllocator::GetLiveBlocks(), before)
            << row.length << " deep, " << row.others << " more";
    }
}

// The command's own routine: it may throw std::bad_alloc, which the command tells.
TEST(ModelFaults, DumpIsWholeOrTellsThatItIsNot) {
    UseModel([](const ORVPrtModel& model) {
        const ScratchFolder folder;
        const std::string path = folder.PathOf("dump.json");
        std::string expected;
        bool isWritten = false;
        WithEachRequestRefused(
            "dump",
            [&] {
                isWritten = false;
                std::FILE* const file = std::fopen(path.c_str(), "wb");
                try {
                    JsonWriter json(file);
                    DumpPages(model, json);
                    isWritten = json.Flush();
                } catch (const std::bad_alloc&) {
                }
                std::fclose(file);
            },
            [&] {
                const std::string dump = FilesOf(folder.Path())["dump.json"];
                if (expected.empty()) expected = dump;
                EXPECT_GT(expected.size(), 1000U);
                EXPECT_TRUE(!isWritten || dump == expected);
            });
    });
}

}  // namespace
