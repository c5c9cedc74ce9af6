// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "library/dump/json_writer.h"
#include "library/input/PrintHost.h"
#include "platform/print/ORVPrintInterpreter.h"

/// What messages call the input and the output of an inspection, and who hears them.
struct InspectionNames {
    std::string input, output;
    PrintHost& host;
};

/// Writes what an interpreter made of a drawing as one object: the print model, or, where there is none, what
/// the drawing draws. Throws std::bad_alloc.
/// @return a result; a failure was reported, before anything was written where there is a model
int WriteInspection(ORVPrintInterpreter& interpreter, const InspectionNames& names, JsonWriter& json);
