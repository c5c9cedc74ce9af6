// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/CommandHost.h"

#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/memory_prefault.h"
#include "apps/orvprint/process/report.h"

int CommandHost::Report(PrintResult result, const std::string& subject, const std::string& reason) {
    return ::Report(static_cast<ExitCode>(result), subject, reason);
}

int CommandHost::Report(const std::string& subject, const ORVFailure& failure) {
    return ::Report(subject, failure);
}

void CommandHost::CountInput(std::uint64_t bytes) { AllowMemoryFor(bytes); }

void CommandHost::PrepareMemory(void* start, std::size_t size) { PrefaultMemory(start, size); }

PrintHost& Host() {
    static CommandHost host;
    return host;
}
