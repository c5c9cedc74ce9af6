// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/limits_command.h"

#include <cstdio>

#include "apps/orvprint/process/report.h"
#include "platform/system/ORVPrintLimits.h"

int RunLimits() {
    for (const ORVPrintLimits::Row& row : ORVPrintLimits::Rows())
        std::printf("%-15.*s %20llu  %.*s\n", static_cast<int>(row.name.size()), row.name.data(),
                    static_cast<unsigned long long>(row.unchecked), static_cast<int>(row.what.size()),
                    row.what.data());
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return Report(kExitUnwritable, "standard output", "cannot be written");
    return kExitDone;
}
