// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "library/dump/json_writer.h"
#include "library/input/PrintHost.h"
#include "platform/print/ORVPrintInterpreter.h"

/// Names of the input and output of an inspection in messages, and the host that receives them.
struct InspectionNames {
    std::string input, output;
    PrintHost& host;
};

/// Writes the interpreter's result for a drawing as one object: the print model or, for interpreters without
/// one, the drawing calls. Throws std::bad_alloc.
/// @return a result; failures are reported to the host, and with a model nothing has been written by then
int WriteInspection(ORVPrintInterpreter& interpreter, const InspectionNames& names, JsonWriter& json);
