// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg2/interpreter/export.h"

class ORVPrintInput;
class ORVPrintInterpreter;

extern "C" {

/// Creates an interpreter of standard SVG documents, owned by the caller.
/// @return null only when out of memory
ORV_MODULE_EXPORT ORVPrintInterpreter* fctCreateORVPrintSVG2Interpreter(ORVPrintInput* input);

/// Identifies the module to its loader.
/// @return 1
ORV_MODULE_EXPORT int TALVEN_QUB2_INTERNAL_ORVPrtInterpreterSVG2();
}
