// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "generators/common/ORVElementPage.h"
#include "generators/common/ORVFormatGenerator.h"
#include "generators/common/ORVGeneratorSequence.h"
#include "generators/common/ORVOutput.h"
#include "generators/flatten/ORVFilterImages.h"
#include "generators/flatten/ORVFlattener.h"
#include "generators/flatten/ORVTileImages.h"
#include "generators/formats.h"
#include "generators/sheet/ORVSheetGenerator.h"
#include "library/input/drawings.h"
#include "library/print/PrintWatch.h"
#include "library/print/page_selection.h"
#include "platform/print/ORVPrintParameters.h"

/// How pages are printed.
struct PageOptions {
    PageSelection pages;  ///< numbered through all inputs
    double dotsPerInch = 90.0;
    /// Resolution of parts that are rasterised because the format has no transparency.
    double flattenDotsPerInch = 300.0;
    unsigned int threads = 0;  ///< number of threads that rasterise a page; 0 for one per processor
    std::optional<ORVSheetOptions> sheet;  ///< empty to print pages in their own size
    std::string elementId;  ///< identifier of the single element to print; empty for the whole drawing
};

/// Further information about a job.
struct JobFacts {
    std::string inputNames;   ///< name of all inputs together in messages
    bool isOneInput = true;   ///< there is exactly one input
    bool isStandard = false;  ///< drawings are standard SVG
    /// Drawings are printed again later; otherwise printing consumes their models.
    bool keepsDrawings = false;
    std::optional<std::int64_t> creationTime;  ///< of the output, in seconds since 1970
    /// Called for each drawing whose pages have been printed; may be empty.
    std::function<void(const std::string& name, const Drawing& drawing, std::size_t pages)> drawn;
};

/// The destination of a job's output.
class PrintTarget {
public:
    PrintTarget() = default;
    virtual ~PrintTarget() = default;
    PrintTarget(const PrintTarget&) = delete;
    PrintTarget& operator=(const PrintTarget&) = delete;

    /// Its name in messages.
    virtual std::string GetName() const = 0;
    /// Whether it accepts only one part.
    virtual bool IsStream() const = 0;
    /// Advice for printing several pages to a stream in a format that holds one page per file.
    virtual std::string GetAdvice() const = 0;
    /// @param isNumbered  there may be several parts
    virtual std::unique_ptr<ORVOutput> Open(bool isNumbered) = 0;
    /// Called when the output is complete, before it is put in place.
    virtual void BeforeCommit(ORVOutput& /*output*/) {}
};

/// Prints drawings, one after the other, into one output. The output appears under its name only if
/// everything succeeds.
class PrintJob {
public:
    /// All arguments except `facts` must outlive the job.
    /// @param watch  may be null
    PrintJob(const PageOptions& options, const ORVOutputFormat& format, JobFacts facts, PrintTarget& target,
             PrintHost& host, PrintWatch* watch)
        : options_(options),
          format_(format),
          facts_(std::move(facts)),
          target_(target),
          host_(host),
          watch_(watch) {}

    /// Prints the selected pages of a drawing.
    /// @param name  of its input, for messages
    /// @return a result; failures are reported to the host
    int Print(const std::string& name, const Drawing& drawing);

    /// Ends the output after the last input and puts it in place.
    /// @return a result; failures are reported to the host
    int Finish();

private:
    int PrintPages(ORVPrintInterpreter& interpreter, ORVPrintParameters& parameters);
    int CheckElement(const std::string& name) const;
    int PassOverPagesWithoutArea(const std::string& name, const Drawing& drawing, unsigned int before,
                                 std::vector<unsigned int>& pages);
    double CountSheets(const Drawing& drawing, const std::vector<unsigned int>& pages) const;
    int Open(bool isWhole, std::size_t pageCount, double sheetCount);
    ORVFormatOptions FormatOptions() const;
    ORVFlattenOptions FlattenOptions(const ORVFormatOptions& format) const;
    double PageScale() const;
    ORVFilterOptions FilterOptions(const ORVFormatOptions& format) const;
    void ReportLowered();
    int ReportFailure(const std::string& name, int status);
    ORVFailure FailureOf(int status) const;
    ORVFailure FailureOfGenerator() const;

    const PageOptions& options_;
    const ORVOutputFormat& format_;
    const JobFacts facts_;
    PrintTarget& target_;
    PrintHost& host_;
    PrintWatch* const watch_;

    unsigned int pagesSeen_ = 0;  // in all inputs so far, printed or not
    double sheetsPrinted_ = 0.0;  // pages of the output so far
    bool isIncomplete_ = false;   // pages without area were skipped
    std::unique_ptr<ORVOutput> output_;
    std::unique_ptr<ORVFormatGenerator> generator_;
    std::unique_ptr<ORVFlattener> flattener_;   // precedes the generator, if the format needs flattening
    std::unique_ptr<ORVFilterImages> filters_;  // precedes the flattener, if there are filters
    std::unique_ptr<ORVSheetGenerator> sheet_;  // precedes the filters, if sheets were requested
    std::optional<ORVGeneratorSequence> sequence_;
    std::optional<WatchedGenerator> watched_;  // precedes the sheets, if there is a watch
    std::optional<ORVElementPage> element_;    // precedes the watch; for the current drawing
    std::unique_ptr<ORVTileImages> tiles_;     // precedes all, for standard SVG; for the current drawing
};
