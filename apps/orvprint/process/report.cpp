// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/report.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <utility>

#include "apps/orvprint/process/limits.h"
#include "apps/orvprint/process/memory_limit.h"
#include "library/input/results.h"
#include "library/text/printable_text.h"
#include "platform/visualization/fonts/text_failure.h"

namespace {

std::string standardInputName;
ORVFailureReason reportedReason = ORVFailureReason::kNone;

void Begin(TextLine& line, const std::string& subject) {
    line.Put("orvprint: ");
    if (subject.empty()) return;
    line.Put(subject);
    line.Put(": ");
}

/// Advice for failures that the memory limit may have caused. Does not allocate.
void PutMemoryLimit(TextLine& line) {
    const std::uint64_t limit = GetMemoryLimitReached();
    if (limit == 0) return;
    std::array<char, 24> number{};
    const char* const end = std::to_chars(number.data(), number.data() + number.size(), limit).ptr;
    line.Put(": more than ");
    line.Put({number.data(), static_cast<std::size_t>(end - number.data())});
    line.Put(" bytes, the limit; to allow more, use --limit memory=N");
}

}  // namespace

std::string DisplayName(const std::string& path, std::string_view standardStream) {
    if (path != "-") return path;
    const bool isNamed = !standardInputName.empty() && standardStream == "standard input";
    return isNamed ? standardInputName : std::string(standardStream);
}

void NameStandardInput(const std::string& name) { standardInputName = name; }

ORVFailureReason TakeReportedReason() { return std::exchange(reportedReason, ORVFailureReason::kNone); }

int Report(ExitCode code, const std::string& subject, const std::string& reason) {
    TextLine line(stderr);
    Begin(line, subject);
    line.Put(reason);
    line.End();
    return code;
}

ExitCode ExitCodeOf(ORVFailureReason reason) { return static_cast<ExitCode>(ResultOf(reason)); }

int Report(const std::string& subject, const ORVFailure& failure) {
    reportedReason = failure.reason;
    TextLine line(stderr);
    Begin(line, subject);
    if (failure.limit) {
        line.Put(LimitReached(*failure.limit));
    } else if (failure.reason == ORVFailureReason::kTextNotSet) {
        line.Put("text cannot be set: ");
        line.Put(ORVGetTextFailure());
    } else {
        line.Put(failure.text);
    }
    if (failure.reason == ORVFailureReason::kOutOfMemory) PutMemoryLimit(line);
    line.End();
    return ExitCodeOf(failure.reason);
}

int ReportOutOfMemory(const std::string& subject) { return Report(subject, ORVFailure::OutOfMemory()); }
