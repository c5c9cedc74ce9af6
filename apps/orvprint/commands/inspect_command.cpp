// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/inspect_command.h"

#include <cstdio>
#include <new>

#include "apps/orvprint/process/CommandHost.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "library/dump/json_writer.h"
#include "library/report/inspection.h"

int RunInspect(const std::string& input, const ReadOptions& options) {
    const std::string name = DisplayName(input, "standard input");
    DrawingTime time;
    time.Begin(name);
    return OpenForInspection(input, options, [&name](ORVPrintInterpreter& interpreter) {
        try {
            JsonWriter json(stdout);
            return WriteInspection(interpreter, {name, "standard output", Host()}, json);
        } catch (const std::bad_alloc&) {
            return ReportOutOfMemory(name);
        }
    });
}
