// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/interpreter/export.h"

class ORVPrintInput;
class ORVPrintInputXMLElement;
class ORVPrintInterpreter;

extern "C" {

/// Creates an interpreter of SVG documents, owned by the caller.
/// @return null only when out of memory
ORV_MODULE_EXPORT ORVPrintInterpreter* fctCreateORVPrintSVGInterpreter(ORVPrintInput* input);

/// Creates an interpreter of SVG fragments in QVXML documents, owned by the caller.
/// @return null only when out of memory
ORV_MODULE_EXPORT ORVPrintInterpreter* fctCreateORVPrintQVXMLInterpreter(ORVPrintInputXMLElement* input);

/// Identifies the module to its loader.
/// @return 1
ORV_MODULE_EXPORT int TALVEN_QUB2_INTERNAL_ORVPrtInterpreterSVG();
}
