// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/limits.h"

#include <charconv>
#include <system_error>

#include "apps/orvprint/process/memory_limit.h"
#include "apps/orvprint/process/report.h"

int ApplyLimits(const std::vector<std::string>& settings) {
    ORVPrintLimits::UseUnchecked();
    for (const std::string& setting : settings) {
        const std::size_t sign = setting.find('=');
        const std::string name = setting.substr(0, sign);
        const ORVPrintLimits::Row* row = ORVPrintLimits::Find(name);
        if (!row) return Report(kExitUsage, "--limit " + name, "unknown limit; orvprint limits lists them");
        const std::string text = sign == std::string::npos ? std::string() : setting.substr(sign + 1);
        std::uint64_t value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        if (text.empty() || error != std::errc() || end != text.data() + text.size() || value > row->greatest)
            return Report(kExitUsage, "--limit " + name,
                          "needs a whole number of at most " + std::to_string(row->greatest) + ", as in " +
                              name + "=" + std::to_string(row->unchecked));
        ORVPrintLimits::Set(row->limit, value);
    }
    BoundMemory();
    return kExitDone;
}

std::string LimitReached(ORVPrintLimit limit) {
    const ORVPrintLimits::Row& row = ORVPrintLimits::RowOf(limit);
    return "has more than " + std::to_string(ORVPrintLimits::Get(limit)) + " " + std::string(row.what) +
           ", the limit; to allow more, use --limit " + std::string(row.name) + "=N";
}
