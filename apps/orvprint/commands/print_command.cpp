// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/print_command.h"

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <new>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "apps/orvprint/commands/check_command.h"
#include "apps/orvprint/commands/formats_command.h"
#include "apps/orvprint/commands/run_sandbox.h"
#include "apps/orvprint/process/CommandHost.h"
#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "generators/common/ORVDescriptorOutput.h"
#include "generators/common/ORVFileOutput.h"
#include "generators/formats.h"
#include "library/print/PrintJob.h"
#include "library/print/creation_time.h"
#include "platform/system/files.h"
#include "platform/xml/unread_elements.h"

namespace {

namespace fs = std::filesystem;

/// The names of elements, up to a maximum.
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

/// Names what the first interpreter did not read in a drawing, and the interpreter that does. Costs nothing
/// for most drawings: the parser has noted whether there is anything.
void TellLoss(const std::string& name, std::uint32_t elements) {
    if (elements == 0) return;
    const bool isStandard = (elements & ~orvprint::kStandardElements) == 0;
    const bool isPartly = !isStandard && (elements & orvprint::kStandardElements) != 0;
    Report(kExitDone, name,
           "contains " + NamesOf(elements) + ", not printed; list with: orvprint check" +
               (isStandard ? "; print with --interpreter svg2"
                           : (isPartly ? "; --interpreter svg2 prints part of it" : "")));
}

/// The destination of a print: a file or standard output.
class CommandTarget final : public PrintTarget {
public:
    CommandTarget(const PrintOptions& options, DrawingTime& time) : options_(options), time_(time) {}

    std::string GetName() const override {
        if (!options_.outputName.empty()) return options_.outputName;
        return DisplayName(options_.output, "standard output");
    }
    bool IsStream() const override { return options_.output == "-"; }
    std::string GetAdvice() const override {
        return "takes one page of this format; choose it with --pages, or name a file with -o";
    }
    std::unique_ptr<ORVOutput> Open(bool isNumbered) override {
        if (IsStream()) return std::make_unique<ORVDescriptorOutput>(STDOUT_FILENO);
        return CreateFile(isNumbered);
    }
    void BeforeCommit(ORVOutput& output) override {
        // Later inputs may read a file of the output's name.
        if (!IsStream()) ProtectFilesOfDrawings(static_cast<ORVFileOutput&>(output));
        // From here on, all parts of the output are written, or none.
        time_.End();
    }
    /// @param isNumbered  there may be several parts
    std::unique_ptr<ORVFileOutput> CreateFile(bool isNumbered) const {
        auto output = std::make_unique<ORVFileOutput>(options_.output, isNumbered);
        for (const std::string& input : options_.inputs) output->Protect(input == "-" ? "/dev/stdin" : input);
        ProtectFilesOfDrawings(*output);
        if (options_.keepsFiles) output->KeepFiles();
        return output;
    }

private:
    static void ProtectFilesOfDrawings(ORVFileOutput& output) {
        for (const FileSet::Identity& file : FilesOfDrawings().GetFiles()) output.Protect(file);
    }

    const PrintOptions& options_;
    DrawingTime& time_;
};

/// The name of all inputs together in messages.
std::string InputNames(const PrintOptions& options) {
    const std::string first = DisplayName(options.inputs.front(), "standard input");
    return options.inputs.size() == 1 ? first : first + " and others";
}

JobFacts FactsOf(const PrintOptions& options) {
    JobFacts facts;
    facts.inputNames = InputNames(options);
    facts.isOneInput = options.inputs.size() == 1;
    facts.isStandard = IsStandard(options.read);
    facts.creationTime = options.asksForDate ? CreationTime(options.inputs) : options.creationTime;
    const bool tellsLoss = options.tellsLoss && !facts.isStandard;
    facts.drawn = [&options, tellsLoss](const std::string& name, const Drawing& drawing, std::size_t pages) {
        if (options.facts) options.facts->pages += static_cast<unsigned int>(pages);
        if (tellsLoss) TellLoss(name, drawing.unreadElements);
    };
    return facts;
}

/// A run of the command.
class Printing {
public:
    Printing(const PrintOptions& options, const ORVOutputFormat& format)
        : options_(options),
          format_(format),
          target_(options, time_),
          job_(options, format, FactsOf(options), target_, Host(), nullptr) {}

    /// Checks whether the output can be written at all.
    /// @return an exit code
    int Check() const {
        if (target_.IsStream()) return kExitDone;
        const fs::path folder = fs::path(options_.output).parent_path();
        std::error_code error;
        if (!folder.empty() && fs::status(folder, error).type() == fs::file_type::not_found)
            return Report(kExitUnwritable, target_.GetName(), "there is no folder " + folder.string());
        const auto trial = target_.CreateFile(format_.onePageAPart && options_.inputs.size() > 1);
        return trial->Prepare() == 1 ? static_cast<int>(kExitDone)
                                     : Report(target_.GetName(), trial->GetFailure());
    }

    int PrintInput(const std::string& input) {
        const std::string name = DisplayName(input, "standard input");
        time_.Begin(name);
        return ForEachDrawing(input, options_.read,
                              [&](const Drawing& drawing) { return job_.Print(name, drawing); });
    }

    /// Call it after all inputs.
    /// @return an exit code
    int Finish() { return job_.Finish(); }

private:
    const PrintOptions& options_;
    const ORVOutputFormat& format_;
    DrawingTime time_;  // of the current input, and of ending the output
    CommandTarget target_;
    PrintJob job_;
};

}  // namespace

const ORVOutputFormat* FindFormatFor(const PrintOptions& options) {
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

int RunPrint(const PrintOptions& options) {
    const ORVOutputFormat* format = FindFormatFor(options);
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
