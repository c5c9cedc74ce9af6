// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/interpreter/factories.h"

#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"

namespace {

template <class Interpreter, class Input>
ORVPrintInterpreter* Create(Input* input) {
    try {
        return new Interpreter(input);
    } catch (...) {  // out of memory, or an exception of the host's input
        return nullptr;
    }
}

}  // namespace

ORVPrintInterpreter* fctCreateORVPrintSVGInterpreter(ORVPrintInput* input) {
    return Create<ORVPrintSVGInterpreter>(input);
}

ORVPrintInterpreter* fctCreateORVPrintQVXMLInterpreter(ORVPrintInputXMLElement* input) {
    return Create<ORVPrintQVXMLInterpreter>(input);
}

int TALVEN_QUB2_INTERNAL_ORVPrtInterpreterSVG() { return 1; }
