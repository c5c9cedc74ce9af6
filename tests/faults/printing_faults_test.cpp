// SPDX-License-Identifier: Apache-2.0

// Printing when memory is refused: nothing is thrown to the host, no file is incomplete, and the status
// reports the failure.

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "generators/common/ORVFileOutput.h"
#include "generators/common/ORVGeneratorSequence.h"
#include "generators/common/ORVOutput.h"
#include "generators/formats.h"
#include "generators/sheet/ORVSheetGenerator.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/faults/allocation_trials.h"
#include "tests/faults/documents.h"
#include "tests/faults/failing_allocator.h"
#include "tests/faults/failing_threads.h"
#include "tests/support/named_rows.h"
#include "tests/support/scratch_folder.h"

namespace fs = std::filesystem;

namespace {

/// Collects bytes without allocating memory.
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
    bool isLarge = false;  ///< enough content to be compressed in a thread
};
constexpr std::array kPrintRows{
    PrintRow{"pdf", "pdf"},
    PrintRow{"ps", "ps"},
    PrintRow{"eps", "eps"},
    PrintRow{"svg", "svg"},
    PrintRow{"png", "png"},
    PrintRow{"tiff", "tiff"},
    PrintRow{"pwg", "pwg"},
    PrintRow{"urf", "urf"},
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

    /// Prints the document as the command does. @return 1 on success
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

}  // namespace
