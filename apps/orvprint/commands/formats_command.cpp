// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/formats_command.h"

#include <cstdio>

#include "apps/orvprint/process/report.h"
#include "generators/formats.h"

std::string OutputFormatNames(std::string_view separator) {
    std::string names;
    for (const ORVOutputFormat& format : ORVOutputFormats()) {
        if (!names.empty()) names += separator;
        names += format.name;
    }
    return names;
}

int RunFormats() {
    for (const ORVOutputFormat& format : ORVOutputFormats())
        std::printf("%-6.*s %s\n", static_cast<int>(format.name.size()), format.name.data(),
                    format.onePageAPart ? "a file for each page" : "one file for all pages");
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return Report(kExitUnwritable, "standard output", "cannot be written");
    return kExitDone;
}
