// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/print_command.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "apps/orvprint/commands/check_command.h"
#include "apps/orvprint/commands/formats_command.h"
#include "apps/orvprint/commands/run_sandbox.h"
#include "apps/orvprint/process/limits.h"
#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "generators/common/ORVDescriptorOutput.h"
#include "generators/common/ORVElementPage.h"
#include "generators/common/ORVFileOutput.h"
#include "generators/common/ORVGeneratorSequence.h"
#include "generators/common/generator_status.h"
#include "generators/flatten/ORVFilterImages.h"
#include "generators/flatten/ORVFlattener.h"
#include "generators/formats.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/system/files.h"
#include "platform/xml/unread_elements.h"

namespace {

namespace fs = std::filesystem;

/// The format asked for, or that of the output's ending. @return null after a report
const ORVOutputFormat* FindFormat(const PrintOptions& options) {
    if (!options.format.empty()) {
        const ORVOutputFormat* format = ORVFindOutputFormat(options.format);
        if (!format)
            Report(kExitUnknownFormat, options.format,
                   "unknown output format; supported are " + OutputFormatNames(", "));
        return format;
    }
    const std::size_t nameStart =
        options.output.rfind('/') == std::string::npos ? 0 : options.output.rfind('/') + 1;
    const std::size_t dot = options.output.rfind('.');
    const bool hasEnding = dot != std::string::npos && dot > nameStart;
    const ORVOutputFormat* format = hasEnding ? ORVFindOutputFormat(options.output.substr(dot + 1)) : nullptr;
    if (!format)
        Report(kExitUnknownFormat, DisplayName(options.output, "standard output"),
               "cannot tell the output format from the name; give it with -f: " + OutputFormatNames(", "));
    return format;
}

/// When the output counts as made, in seconds since 1970: as the environment says for builds that are to be
/// repeated, else when the newest input was changed, so that the same inputs give the same output.
std::optional<std::int64_t> CreationTime(const std::vector<std::string>& inputs) {
    if (const char* text = ORVGetEnv("SOURCE_DATE_EPOCH")) {
        std::int64_t seconds = 0;
        const char* const end = text + std::strlen(text);
        if (const auto read = std::from_chars(text, end, seconds); read.ec == std::errc() && read.ptr == end)
            return seconds;
    }
    std::optional<std::int64_t> newest;
    for (const std::string& input : inputs) {
        struct stat facts {};
        if (input == "-" || stat(input.c_str(), &facts) != 0) continue;
        newest = std::max<std::int64_t>(newest.value_or(facts.st_mtime), facts.st_mtime);
    }
    return newest;
}

/// "page 3 has", "pages 3, 5 and 7 have"; of many, the first ones.
std::string PageNumbers(const std::vector<unsigned int>& pages) {
    constexpr std::size_t kMostNamed = 5;
    if (pages.size() == 1) return "page " + std::to_string(pages.front()) + " has";
    const std::size_t named = std::min(pages.size() - 1, kMostNamed);
    std::string text = "pages ";
    for (std::size_t i = 0; i < named; ++i) text += (i == 0 ? "" : ", ") + std::to_string(pages[i]);
    text += " and " + (pages.size() - named == 1 ? std::to_string(pages.back())
                                                 : std::to_string(pages.size() - named) + " others");
    return text + " have";
}

/// Names of elements, the first ones of them.
std::string NamesOf(std::uint32_t elements) {
    constexpr unsigned int kMostNamed = 3;
    std::string names;
    unsigned int count = 0;
    for (unsigned int place = 0; !orvprint::NameOfUnreadElement(place).empty(); ++place) {
        if ((elements >> place & 1U) == 0) continue;
        if (count++ < kMostNamed)
            names.append(names.empty() ? "" : ", ").append(orvprint::NameOfUnreadElement(place));
    }
    if (count == 0) return "unknown elements";
    return names + (count > kMostNamed || (elements & orvprint::kOtherElements) != 0 ? " and more" : "");
}

/// Says what of a drawing the first interpreter did not read, and who does. Most drawings have nothing of the
/// kind, which the parser knows.
void TellLoss(const std::string& name, std::uint32_t elements) {
    if (elements == 0) return;
    const bool isStandard = (elements & ~orvprint::kStandardElements) == 0;
    const bool isPartly = !isStandard && (elements & orvprint::kStandardElements) != 0;
    Report(kExitDone, name,
           "contains " + NamesOf(elements) + ", not printed; list with: orvprint check" +
               (isStandard ? "; print with --interpreter svg2"
                           : (isPartly ? "; --interpreter svg2 prints part of it" : "")));
}

/// One run of the command: the output, and what went into it so far.
class Printing {
public:
    Printing(const PrintOptions& options, const ORVOutputFormat& format)
        : options_(options), format_(format) {}

    /// Finds out whether the output can be written at all. @return an exit code
    int Check() {
        if (options_.output == "-") return kExitDone;
        const fs::path folder = fs::path(options_.output).parent_path();
        std::error_code error;
        if (!folder.empty() && fs::status(folder, error).type() == fs::file_type::not_found)
            return Report(kExitUnwritable, OutputName(), "there is no folder " + folder.string());
        const auto trial = CreateFileOutput(format_.onePageAPart && options_.inputs.size() > 1);
        return trial->Prepare() == 1 ? static_cast<int>(kExitDone)
                                     : Report(OutputName(), trial->GetFailure());
    }

    int PrintInput(const std::string& input) {
        time_.Begin(DisplayName(input, "standard input"));
        return ForEachDrawing(input, options_.read,
                              [&](const Drawing& drawing) { return PrintDrawing(input, drawing); });
    }

    /// After all inputs. @return an exit code
    int Finish() {
        // Of nothing but pages that were passed over, there is no output.
        if (!sequence_ && isIncomplete_) return kExitFailed;
        if (options_.pages.GetGreatest() > pagesSeen_)
            return Report(kExitPageOutOfRange, InputNames(),
                          "there is no page " + std::to_string(options_.pages.GetGreatest()) + " (" +
                              std::to_string(pagesSeen_) + (pagesSeen_ == 1 ? " page)" : " pages)"));
        if (const int status = sequence_->Finish(); status != kGeneratorDone)
            return ReportFailure(InputNames(), status);
        // What later drawings read may stand under the output's name.
        if (file_) ProtectFilesOfDrawings(*file_);
        // From here on there are no parts of an output, but all or none.
        time_.End();
        if (output_->Commit() != 1) return ReportFailure(InputNames(), kOutputFailed);
        return isIncomplete_ ? kExitFailed : kExitDone;
    }

private:
    /// @param isNumbered  there may be several parts
    std::unique_ptr<ORVFileOutput> CreateFileOutput(bool isNumbered) const {
        auto output = std::make_unique<ORVFileOutput>(options_.output, isNumbered);
        for (const std::string& input : options_.inputs) output->Protect(input == "-" ? "/dev/stdin" : input);
        ProtectFilesOfDrawings(*output);
        if (options_.keepsFiles) output->KeepFiles();
        return output;
    }

    static void ProtectFilesOfDrawings(ORVFileOutput& output) {
        for (const FileSet::Identity& file : FilesOfDrawings().GetFiles()) output.Protect(file);
    }

    std::string OutputName() const {
        if (!options_.outputName.empty()) return options_.outputName;
        return DisplayName(options_.output, "standard output");
    }

    std::string InputNames() const {
        const std::string first = DisplayName(options_.inputs.front(), "standard input");
        return options_.inputs.size() == 1 ? first : first + " and others";
    }

    int PrintDrawing(const std::string& input, const Drawing& drawing) {
        const std::string name = DisplayName(input, "standard input");
        const auto count = static_cast<unsigned int>(drawing.pages.size());
        std::vector<unsigned int> pages = options_.pages.Select(pagesSeen_, count);
        const unsigned int before = pagesSeen_;
        pagesSeen_ += count;
        // Of an input that cannot have the page, nothing needs to be drawn.
        const bool isWhole = options_.inputs.size() == 1 && drawing.isOnly;
        if (isWhole && options_.pages.GetGreatest() > count) return kExitDone;
        if (const int code = PassOverPagesWithoutArea(name, drawing, before, pages); code != kExitDone)
            return code;
        if (pages.empty()) return kExitDone;
        const double sheets = CountSheets(drawing, pages);
        // Posters of more sheets than there may ever be are refused by what lays them out, with better
        // advice.
        const bool isPoster = options_.sheet && options_.sheet->layout.isPoster;
        if (!isPoster || !(sheets > kMostPosterSheets)) sheetsPrinted_ += sheets;
        if (sheetsPrinted_ > static_cast<double>(ORVPrintLimits::Get(ORVPrintLimit::kPages)))
            return Report(name, ORVFailure::OfLimit(ORVPrintLimit::kPages));
        if (!sequence_)
            if (const int code = Open(isWhole, options_.elementId.empty() ? pages.size() : 1, sheets);
                code != kExitDone)
                return code;

        ORVPrintParameters parameters;
        parameters.SetPages(pages);
        parameters.SetIsLast(true);
        drawing.interpreter.SetAllPages(1);
        const int status = PrintPages(drawing.interpreter, parameters);
        for (const ORVPrintPropertiesManager::Info& info : ORVPrintPropertiesManager::GetInfos())
            Report(kExitDone, name, std::string(info.message.GetView()));
        ORVPrintPropertiesManager::ClearInfos();
        if (status != kGeneratorDone) return ReportFailure(name, status);
        if (options_.facts) options_.facts->pages += static_cast<unsigned int>(pages.size());
        if (options_.tellsLoss && options_.read.interpreter == "SVG") TellLoss(name, drawing.unreadElements);
        return element_ ? CheckElement(name) : static_cast<int>(kExitDone);
    }

    int PrintPages(ORVPrintInterpreter& interpreter, ORVPrintParameters& parameters) {
        if (options_.elementId.empty()) return interpreter.Print(&*sequence_, parameters);
        element_.emplace(*sequence_, options_.elementId);
        parameters.SetReportedElement(ORVUnicodeString(options_.elementId));
        return interpreter.Print(&*element_, parameters);
    }

    /// Finds out whether the one element came. @return an exit code; a failure was reported
    int CheckElement(const std::string& name) const {
        if (element_->HasPage()) return kExitDone;
        return Report(kExitPageOutOfRange, name,
                      element_->IsFound()
                          ? "the element '" + options_.elementId + "' shows nothing"
                          : "no element with the id '" + options_.elementId +
                                "' is drawn; --export-id takes an element that the drawing shows");
    }

    /// Takes the pages without area out, which is reported. One that was asked for by its number is a
    /// failure.
    /// @param before  pages of the inputs before this drawing
    /// @return an exit code
    int PassOverPagesWithoutArea(const std::string& name, const Drawing& drawing, unsigned int before,
                                 std::vector<unsigned int>& pages) {
        std::vector<unsigned int> without;
        std::erase_if(pages, [&](unsigned int page) {
            if (drawing.pages[page - 1].hasArea) return false;
            without.push_back(before + page);
            return true;
        });
        if (without.empty()) return kExitDone;
        isIncomplete_ = true;
        const int code = Report(kExitFailed, name,
                                PageNumbers(without) +
                                    " no area and cannot be printed; give the svg element a "
                                    "width and a height, or a viewBox");
        return options_.pages.IsAll() ? static_cast<int>(kExitDone) : code;
    }

    /// Sheets that pages of a drawing take.
    double CountSheets(const Drawing& drawing, const std::vector<unsigned int>& pages) const {
        if (!options_.elementId.empty()) return 1.0;
        if (!options_.sheet) return static_cast<double>(pages.size());
        std::vector<ORVPaperSize> sizes;
        sizes.reserve(pages.size());
        for (const unsigned int page : pages)
            sizes.push_back({drawing.pages[page - 1].width, drawing.pages[page - 1].height});
        return ORVCountSheets(options_.sheet->layout, sizes);
    }

    /// Opens the output for the first page.
    /// @param isWhole     whether these are all pages of the output
    /// @param sheetCount  pages of the format that they take
    /// @return an exit code
    int Open(bool isWhole, std::size_t pageCount, double sheetCount) {
        const bool sharesSheets = options_.sheet && options_.sheet->layout.pagesPerSheet > 1;
        const bool isSingle = sheetCount == 1.0 &&
                              (options_.pages.IsAll() || sharesSheets ? isWhole : options_.pages.IsSingle());
        if (options_.output == "-" && format_.onePageAPart && !isSingle)
            return Report(kExitUsage, "standard output",
                          "takes one page of this format; choose it with --pages, or name a file with -o");
        if (options_.output == "-") {
            output_ = std::make_unique<ORVDescriptorOutput>(STDOUT_FILENO);
        } else {
            auto file = CreateFileOutput(format_.onePageAPart && !isSingle);
            file_ = file.get();
            output_ = std::move(file);
        }
        ORVFormatOptions formatOptions;
        formatOptions.dotsPerInch = options_.dotsPerInch;
        formatOptions.creationTime = CreationTime(options_.inputs);
        formatOptions.pixelLimit = ORVPrintLimits::Get(ORVPrintLimit::kPagePixels);
        formatOptions.outputPixelLimit = ORVPrintLimits::Get(ORVPrintLimit::kOutputPixels);
        formatOptions.paintLimit = ORVPrintLimits::Get(ORVPrintLimit::kPaintedPixels);
        formatOptions.threads = options_.threads;
        if (options_.sheet) formatOptions.colourMode = options_.sheet->colourMode;
        generator_ = format_.create(*output_, formatOptions);
        if (!generator_) return ReportOutOfMemory(OutputName());
        // What the first interpreter draws, every format can say.
        if (options_.read.interpreter != "SVG" && ORVFlattener::IsNeededBefore(generator_->Get()))
            flattener_ = std::make_unique<ORVFlattener>(generator_->Get(), FlattenOptions(formatOptions));
        if (options_.read.interpreter != "SVG") {
            ORVPrintGenerator& target = flattener_ ? *flattener_ : generator_->Get();
            filters_ = std::make_unique<ORVFilterImages>(target, FilterOptions(formatOptions));
        }
        ORVPrintGenerator& format = filters_ ? *filters_ : generator_->Get();
        if (options_.sheet) {
            ORVSheetOptions sheet = *options_.sheet;
            sheet.keepsGreys = format_.makesDots;
            sheet_ = std::make_unique<ORVSheetGenerator>(format, sheet);
        }
        sequence_.emplace(sheet_ ? *sheet_ : format, isWhole ? static_cast<unsigned int>(pageCount) : 0);
        return kExitDone;
    }

    ORVFlattenOptions FlattenOptions(const ORVFormatOptions& format) const {
        ORVFlattenOptions options;
        options.dotsPerInch = options_.flattenDotsPerInch;
        options.colourMode = format.colourMode;
        options.pixelLimit = format.pixelLimit;
        options.outputPixelLimit = format.outputPixelLimit;
        options.paintLimit = format.paintLimit;
        options.threads = format.threads;
        return options;
    }

    /// Formats of pixels get images of their own pixels.
    ORVFilterOptions FilterOptions(const ORVFormatOptions& format) const {
        ORVFilterOptions options;
        options.dotsPerInch = format_.hasPixels ? format.dotsPerInch : options_.flattenDotsPerInch;
        options.pixelLimit = format.pixelLimit;
        options.outputPixelLimit = format.outputPixelLimit;
        options.paintLimit = format.paintLimit;
        options.threads = format.threads;
        return options;
    }

    int ReportFailure(const std::string& name, int status) const {
        const ORVFailure failure = FailureOf(status);
        return Report(failure.reason == ORVFailureReason::kUnwritable ? OutputName() : name, failure);
    }

    /// Why printing ended with a status: whoever failed first knows best.
    ORVFailure FailureOf(int status) const {
        if (output_->IsPastLimit()) return ORVFailure::OfLimit(ORVPrintLimit::kOutputBytes);
        if (output_->GetFailure()) return output_->GetFailure();
        ORVFailure failure = ORVFailureOfStatus(status);
        if (failure.reason == ORVFailureReason::kNotDrawn) failure = FailureOfGenerator();
        if (failure.reason == ORVFailureReason::kNotDrawn || failure.reason == ORVFailureReason::kOutOfMemory)
            failure.text = "printing failed" + (failure.text.empty() ? "" : ": " + failure.text);
        return failure;
    }

    ORVFailure FailureOfGenerator() const {
        if (sheet_ && sheet_->GetFailure()) return sheet_->GetFailure();
        if (filters_ && filters_->GetFailure()) return filters_->GetFailure();
        if (flattener_ && flattener_->GetFailure()) return flattener_->GetFailure();
        if (generator_->GetFailure()) return generator_->GetFailure();
        return ORVFailure::Of(ORVFailureReason::kNotDrawn);
    }

    const PrintOptions& options_;
    const ORVOutputFormat& format_;
    DrawingTime time_;            // of the present input, and of the output's end
    unsigned int pagesSeen_ = 0;  // of all inputs so far, printed or not
    double sheetsPrinted_ = 0.0;  // pages of the output
    bool isIncomplete_ = false;   // pages were passed over
    std::unique_ptr<ORVOutput> output_;
    ORVFileOutput* file_ = nullptr;  // the output, when it is one
    std::unique_ptr<ORVFormatGenerator> generator_;
    std::unique_ptr<ORVFlattener> flattener_;   // before the generator, when needed
    std::unique_ptr<ORVFilterImages> filters_;  // before these, unless nothing has filters
    std::unique_ptr<ORVSheetGenerator> sheet_;  // before that, when asked for
    std::optional<ORVGeneratorSequence> sequence_;
    std::optional<ORVElementPage> element_;  // before that, of the present drawing
};

}  // namespace

int RunPrint(const PrintOptions& options) {
    const ORVOutputFormat* format = FindFormat(options);
    if (!format) return kExitUnknownFormat;
    for (const std::string& input : options.inputs)
        if (const int code = CheckInput(input); code != kExitDone) return code;
    if (!options.isInSandbox) {
        RunFiles files{.inputs = options.inputs, .output = options.output};
        files.keepsTemporaryFiles = KeepsTemporaryFiles(format->name);
        if (const int code = EnterSandboxFor(options.read, std::move(files)); code != kExitDone) return code;
    }
    if (options.strict) {
        if (const int code = CheckBeforePrinting(options.inputs, options.read, options.ignored);
            code != kExitDone)
            return code;
        BoundMemory();  // the inputs are read again, and count again
    }
    Printing printing(options, *format);
    if (const int code = printing.Check(); code != kExitDone) return code;
    for (const std::string& input : options.inputs) {
        try {
            if (const int code = printing.PrintInput(input); code != kExitDone) return code;
        } catch (const std::bad_alloc&) {
            return ReportOutOfMemory(DisplayName(input, "standard input"));
        }
    }
    return printing.Finish();
}
