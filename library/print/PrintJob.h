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
#include "generators/formats.h"
#include "generators/sheet/ORVSheetGenerator.h"
#include "library/input/drawings.h"
#include "library/print/PrintWatch.h"
#include "library/print/page_selection.h"
#include "platform/print/ORVPrintParameters.h"

/// How pages come out.
struct PageOptions {
    PageSelection pages;  ///< counted through all inputs
    double dotsPerInch = 90.0;
    double flattenDotsPerInch = 300.0;  ///< of transparent parts, where the format has no transparency
    unsigned int threads = 0;           ///< that draw a picture; 0 for as many as the machine has processors
    std::optional<ORVSheetOptions> sheet;  ///< nothing: pages come out as they are
    std::string elementId;                 ///< of the one element to print; empty for all of the drawing
};

/// What a job is told besides.
struct JobFacts {
    std::string inputNames;                    ///< what messages call all inputs together
    bool isOneInput = true;                    ///< whether there is only one
    bool isStandard = false;                   ///< drawings are standard SVG
    bool keepsDrawings = false;                ///< they are printed again; else a print takes its model apart
    std::optional<std::int64_t> creationTime;  ///< of the output, seconds since 1970
    /// Hears of a drawing whose pages have been drawn; may be empty.
    std::function<void(const std::string& name, const Drawing& drawing, std::size_t pages)> drawn;
};

/// Where the output of a job goes.
class PrintTarget {
public:
    PrintTarget() = default;
    virtual ~PrintTarget() = default;
    PrintTarget(const PrintTarget&) = delete;
    PrintTarget& operator=(const PrintTarget&) = delete;

    /// What messages call it.
    virtual std::string GetName() const = 0;
    /// Whether it takes no more than one part.
    virtual bool IsStream() const = 0;
    /// What to say of a stream to whoever prints several pages to files of one page each.
    virtual std::string GetAdvice() const = 0;
    /// @param isNumbered  there may be several parts
    virtual std::unique_ptr<ORVOutput> Open(bool isNumbered) = 0;
    /// The output is complete, and about to take its place.
    virtual void BeforeCommit(ORVOutput& /*output*/) {}
};

/// Prints drawings, one after the other, into one output. Nothing shows under its name unless all went well.
class PrintJob {
public:
    /// All must outlive the job.
    /// @param watch  may be null
    PrintJob(const PageOptions& options, const ORVOutputFormat& format, JobFacts facts, PrintTarget& target,
             PrintHost& host, PrintWatch* watch)
        : options_(options),
          format_(format),
          facts_(std::move(facts)),
          target_(target),
          host_(host),
          watch_(watch) {}

    /// Prints the pages of a drawing that are wanted.
    /// @param name  of its input, in messages
    /// @return a result; a failure was reported
    int Print(const std::string& name, const Drawing& drawing);

    /// After all inputs: ends the output and puts it in place. @return a result; a failure was reported
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
    ORVFilterOptions FilterOptions(const ORVFormatOptions& format) const;
    int ReportFailure(const std::string& name, int status);
    ORVFailure FailureOf(int status) const;
    ORVFailure FailureOfGenerator() const;

    const PageOptions& options_;
    const ORVOutputFormat& format_;
    const JobFacts facts_;
    PrintTarget& target_;
    PrintHost& host_;
    PrintWatch* const watch_;

    unsigned int pagesSeen_ = 0;  // of all inputs so far, printed or not
    double sheetsPrinted_ = 0.0;  // pages of the output
    bool isIncomplete_ = false;   // pages were passed over
    std::unique_ptr<ORVOutput> output_;
    std::unique_ptr<ORVFormatGenerator> generator_;
    std::unique_ptr<ORVFlattener> flattener_;   // before the generator, when needed
    std::unique_ptr<ORVFilterImages> filters_;  // before these, unless nothing has filters
    std::unique_ptr<ORVSheetGenerator> sheet_;  // before that, when asked for
    std::optional<ORVGeneratorSequence> sequence_;
    std::optional<WatchedGenerator> watched_;  // before that, when somebody watches
    std::optional<ORVElementPage> element_;    // before that, of the present drawing
};
