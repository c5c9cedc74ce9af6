// SPDX-License-Identifier: Apache-2.0
#include "library/print/PrintJob.h"

#include <cmath>
#include <utility>

#include "generators/common/generator_status.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/system/ORVPrintLimits.h"

namespace {

/// Formats "page 3 has" or "pages 3, 5 and 7 have"; of many pages only the first are named.
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

/// @param what  one of the images, in the singular
std::string LoweredText(const ORVLoweredImages& lowered, const char* what) {
    return std::to_string(lowered.count) + " " + what + (lowered.count == 1 ? " was" : "s were") +
           " drawn at a lower resolution, " + std::to_string(std::lround(lowered.dotsPerInch)) +
           (lowered.count == 1 ? "" : " or more") + " dots per inch, to limit memory and time";
}

}  // namespace

int PrintJob::Print(const std::string& name, const Drawing& drawing) {
    const auto count = static_cast<unsigned int>(drawing.pages.size());
    std::vector<unsigned int> pages = options_.pages.Select(pagesSeen_, count);
    const unsigned int before = pagesSeen_;
    pagesSeen_ += count;
    // If the input does not have the requested page, nothing is drawn.
    const bool isWhole = facts_.isOneInput && drawing.isOnly;
    if (isWhole && options_.pages.GetGreatest() > count) return kResultDone;
    if (const int code = PassOverPagesWithoutArea(name, drawing, before, pages); code != kResultDone)
        return code;
    if (pages.empty()) return kResultDone;
    const double sheets = CountSheets(drawing, pages);
    // Posters with more sheets than any limit are rejected by the sheet layout, with a more helpful message.
    const bool isPoster = options_.sheet && options_.sheet->layout.isPoster;
    if (!isPoster || !(sheets > kMostPosterSheets)) sheetsPrinted_ += sheets;
    if (sheetsPrinted_ > static_cast<double>(ORVPrintLimits::Get(ORVPrintLimit::kPages)))
        return host_.Report(name, ORVFailure::OfLimit(ORVPrintLimit::kPages));
    if (!sequence_)
        if (const int code = Open(isWhole, options_.elementId.empty() ? pages.size() : 1, sheets);
            code != kResultDone)
            return code;

    ORVPrintParameters parameters;
    parameters.SetPages(pages);
    parameters.SetIsLast(!facts_.keepsDrawings);
    drawing.interpreter.SetAllPages(1);
    const int status = PrintPages(drawing.interpreter, parameters);
    for (const ORVPrintPropertiesManager::Info& info : ORVPrintPropertiesManager::GetInfos())
        host_.Report(kResultDone, name, std::string(info.message.GetView()));
    ORVPrintPropertiesManager::ClearInfos();
    if (status != kGeneratorDone) return ReportFailure(name, status);
    if (facts_.drawn) facts_.drawn(name, drawing, pages.size());
    return element_ ? CheckElement(name) : static_cast<int>(kResultDone);
}

int PrintJob::Finish() {
    // If all pages were skipped, there is no output.
    if (!sequence_ && isIncomplete_) return kResultFailed;
    if (options_.pages.GetGreatest() > pagesSeen_)
        return host_.Report(kResultPageOutOfRange, facts_.inputNames,
                            "there is no page " + std::to_string(options_.pages.GetGreatest()) + " (" +
                                std::to_string(pagesSeen_) + (pagesSeen_ == 1 ? " page)" : " pages)"));
    if (const int status = sequence_->Finish(); status != kGeneratorDone)
        return ReportFailure(facts_.inputNames, status);
    if (watch_ && watch_->IsCancelled()) return ReportFailure(facts_.inputNames, kOutputFailed);
    target_.BeforeCommit(*output_);
    if (output_->Commit() != 1) return ReportFailure(facts_.inputNames, kOutputFailed);
    ReportLowered();
    return isIncomplete_ ? kResultFailed : kResultDone;
}

int PrintJob::PrintPages(ORVPrintInterpreter& interpreter, ORVPrintParameters& parameters) {
    ORVPrintGenerator* target = watched_ ? static_cast<ORVPrintGenerator*>(&*watched_) : &*sequence_;
    if (!options_.elementId.empty()) {
        element_.emplace(*target, options_.elementId);
        parameters.SetReportedElement(ORVUnicodeString(options_.elementId));
        target = &*element_;
    }
    if (facts_.isStandard) {
        tiles_ = std::make_unique<ORVTileImages>(
            *target, FilterOptions(FormatOptions()), [this] { return PageScale(); },
            format_.hasPixels ? 0.0 : ORVTileImages::kMostTiles);
        target = tiles_.get();
    }
    return interpreter.Print(target, parameters);
}

int PrintJob::CheckElement(const std::string& name) const {
    if (element_->HasPage()) return kResultDone;
    return host_.Report(kResultPageOutOfRange, name,
                        element_->IsFound()
                            ? "the element '" + options_.elementId + "' shows nothing"
                            : "no element with the id '" + options_.elementId +
                                  "' is drawn; --export-id takes an element that the drawing shows");
}

int PrintJob::PassOverPagesWithoutArea(const std::string& name, const Drawing& drawing, unsigned int before,
                                       std::vector<unsigned int>& pages) {
    std::vector<unsigned int> without;
    std::erase_if(pages, [&](unsigned int page) {
        if (drawing.pages[page - 1].hasArea) return false;
        without.push_back(before + page);
        return true;
    });
    if (without.empty()) return kResultDone;
    isIncomplete_ = true;
    const int code = host_.Report(kResultFailed, name,
                                  PageNumbers(without) +
                                      " no area and cannot be printed; give the svg element a "
                                      "width and a height, or a viewBox");
    return options_.pages.IsAll() ? static_cast<int>(kResultDone) : code;
}

double PrintJob::CountSheets(const Drawing& drawing, const std::vector<unsigned int>& pages) const {
    if (!options_.elementId.empty()) return 1.0;
    if (!options_.sheet) return static_cast<double>(pages.size());
    std::vector<ORVPaperSize> sizes;
    sizes.reserve(pages.size());
    for (const unsigned int page : pages)
        sizes.push_back({drawing.pages[page - 1].width, drawing.pages[page - 1].height});
    return ORVCountSheets(options_.sheet->layout, sizes);
}

int PrintJob::Open(bool isWhole, std::size_t pageCount, double sheetCount) {
    const bool sharesSheets = options_.sheet && options_.sheet->layout.pagesPerSheet > 1;
    const bool isSingle =
        sheetCount == 1.0 && (options_.pages.IsAll() || sharesSheets ? isWhole : options_.pages.IsSingle());
    if (target_.IsStream() && format_.onePageAPart && !isSingle)
        return host_.Report(kResultUsage, target_.GetName(), target_.GetAdvice());
    output_ = target_.Open(format_.onePageAPart && !isSingle);
    const ORVFormatOptions formatOptions = FormatOptions();
    generator_ = format_.create(*output_, formatOptions);
    if (!generator_) return host_.ReportOutOfMemory(target_.GetName());
    // Only standard SVG uses features that some formats lack.
    if (facts_.isStandard && ORVFlattener::IsNeededBefore(generator_->Get()))
        flattener_ = std::make_unique<ORVFlattener>(generator_->Get(), FlattenOptions(formatOptions));
    if (facts_.isStandard) {
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
    if (watch_) watched_.emplace(*sequence_, *watch_);
    return kResultDone;
}

ORVFormatOptions PrintJob::FormatOptions() const {
    ORVFormatOptions formatOptions;
    formatOptions.dotsPerInch = options_.dotsPerInch;
    formatOptions.creationTime = facts_.creationTime;
    formatOptions.pixelLimit = ORVPrintLimits::Get(ORVPrintLimit::kPagePixels);
    formatOptions.outputPixelLimit = ORVPrintLimits::Get(ORVPrintLimit::kOutputPixels);
    formatOptions.paintLimit = ORVPrintLimits::Get(ORVPrintLimit::kPaintedPixels);
    formatOptions.threads = options_.threads;
    if (options_.sheet) formatOptions.colourMode = options_.sheet->colourMode;
    return formatOptions;
}

ORVFlattenOptions PrintJob::FlattenOptions(const ORVFormatOptions& format) const {
    ORVFlattenOptions options;
    options.dotsPerInch = options_.flattenDotsPerInch;
    options.colourMode = format.colourMode;
    options.pixelLimit = format.pixelLimit;
    options.outputPixelLimit = format.outputPixelLimit;
    options.paintLimit = format.paintLimit;
    options.threads = format.threads;
    return options;
}

double PrintJob::PageScale() const {
    // The page of an element begins when the element is complete.
    constexpr double kUnknown = 2.0;
    if (!sheet_) return 1.0;
    return element_ ? kUnknown : sheet_->GetPageScale();
}

ORVFilterOptions PrintJob::FilterOptions(const ORVFormatOptions& format) const {
    ORVFilterOptions options;
    options.dotsPerInch = format_.hasPixels ? format.dotsPerInch : options_.flattenDotsPerInch;
    // That of screens; filters of raster formats coincide with the pixels of the page.
    constexpr double kLeastDotsPerInch = 96.0;
    if (!format_.hasPixels) options.leastDotsPerInch = kLeastDotsPerInch;
    options.pixelLimit = format.pixelLimit;
    options.outputPixelLimit = format.outputPixelLimit;
    options.paintLimit = format.paintLimit;
    options.threads = format.threads;
    return options;
}

void PrintJob::ReportLowered() {
    if (filters_ && filters_->GetLowered().count > 0)
        host_.Report(kResultDone, facts_.inputNames, LoweredText(filters_->GetLowered(), "filter"));
    if (flattener_ && flattener_->GetLowered().count > 0)
        host_.Report(kResultDone, facts_.inputNames,
                     LoweredText(flattener_->GetLowered(), "transparent part"));
}

int PrintJob::ReportFailure(const std::string& name, int status) {
    if (watch_ && (status == WatchedGenerator::kCancelled || watch_->IsCancelled()))
        return host_.Report(kResultCancelled, name, "was cancelled");
    const ORVFailure failure = FailureOf(status);
    return host_.Report(failure.reason == ORVFailureReason::kUnwritable ? target_.GetName() : name, failure);
}

ORVFailure PrintJob::FailureOf(int status) const {
    if (output_->IsPastLimit()) return ORVFailure::OfLimit(ORVPrintLimit::kOutputBytes);
    if (output_->GetFailure()) return output_->GetFailure();
    ORVFailure failure = ORVFailureOfStatus(status);
    if (failure.reason == ORVFailureReason::kNotDrawn) failure = FailureOfGenerator();
    if (failure.reason == ORVFailureReason::kNotDrawn || failure.reason == ORVFailureReason::kOutOfMemory)
        failure.text = "printing failed" + (failure.text.empty() ? "" : ": " + failure.text);
    return failure;
}

ORVFailure PrintJob::FailureOfGenerator() const {
    if (tiles_ && tiles_->GetFailure()) return tiles_->GetFailure();
    if (sheet_ && sheet_->GetFailure()) return sheet_->GetFailure();
    if (filters_ && filters_->GetFailure()) return filters_->GetFailure();
    if (flattener_ && flattener_->GetFailure()) return flattener_->GetFailure();
    if (generator_->GetFailure()) return generator_->GetFailure();
    return ORVFailure::Of(ORVFailureReason::kNotDrawn);
}
