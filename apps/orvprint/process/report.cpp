// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/report.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/printable_text.h"
#include "platform/visualization/fonts/text_failure.h"

std::string DisplayName(const std::string& path, std::string_view standardStream) {
    return path == "-" ? std::string(standardStream) : path;
}

int Report(ExitCode code, const std::string& subject, const std::string& reason) {
    TextLine line(stderr);
    line.Put("orvprint: ");
    if (!subject.empty()) {
        line.Put(subject);
        line.Put(": ");
    }
    line.Put(reason);
    // Those words come from every library of ours, as texts.
    if (reason.ends_with("out of memory"))
        if (const std::uint64_t limit = GetMemoryLimitReached(); limit != 0) {
            std::array<char, 24> number{};
            const char* const end = std::to_chars(number.data(), number.data() + number.size(), limit).ptr;
            line.Put(": more than ");
            line.Put({number.data(), static_cast<std::size_t>(end - number.data())});
            line.Put(" bytes, the limit; to allow more, use --limit memory=N");
        }
    line.End();
    return code;
}

std::string TextCannotBeSet() { return "text cannot be set: " + std::string(ORVGetTextFailure()); }
