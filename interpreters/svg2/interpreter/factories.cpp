// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/interpreter/factories.h"

#include "interpreters/svg2/interpreter/ORVPrintSVG2Interpreter.h"

ORVPrintInterpreter* fctCreateORVPrintSVG2Interpreter(ORVPrintInput* input) {
    try {
        return new ORVPrintSVG2Interpreter(input);
    } catch (...) {  // out of memory, or an exception of the host's input
        return nullptr;
    }
}

int TALVEN_QUB2_INTERNAL_ORVPrtInterpreterSVG2() { return 1; }
