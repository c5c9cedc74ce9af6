// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/interpreter/export.h"

class ORVPrintInput;
class ORVPrintInputXMLElement;
class ORVPrintInterpreter;

extern "C" {

/// Creates an interpreter of SVG documents, owned by the caller. Null only when out of memory.
ORV_MODULE_EXPORT ORVPrintInterpreter* fctCreateORVPrintSVGInterpreter(ORVPrintInput* input);

/// Creates an interpreter of SVG fragments in QVXML documents, owned by the caller. Null only when memory is
/// spent.
ORV_MODULE_EXPORT ORVPrintInterpreter* fctCreateORVPrintQVXMLInterpreter(ORVPrintInputXMLElement* input);

/// Marks the module. @return 1
ORV_MODULE_EXPORT int TALVEN_QUB2_INTERNAL_ORVPrtInterpreterSVG();
}
