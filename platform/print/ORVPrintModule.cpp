// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintModule.h"

#include <exception>
#include <utility>

#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/system/modules.h"

namespace {

/// An interpreter provided by a module. To add one, add a row.
struct InterpreterRow {
    const char* name;
    const char* library;
    const char* factory;
    /// Calls the factory with an input of the required kind; null when the input is of another kind.
    ORVPrintInterpreter* (*create)(void* factory, ORVPrintInput* input);
    /// Symbol of the interpreter's member function that sets the document's path.
    const char* setCurrentPath;
};

ORVPrintInterpreter* CreateFromAnyInput(void* factory, ORVPrintInput* input) {
    return reinterpret_cast<ORVPrintInterpreter* (*)(ORVPrintInput*)>(factory)(input);
}

ORVPrintInterpreter* CreateFromXMLElement(void* factory, ORVPrintInput* input) {
    if (input && !input->IsAKindOf("ORVPrintInputXMLElement")) return nullptr;
    using Factory = ORVPrintInterpreter* (*)(ORVPrintInputXMLElement*);
    return reinterpret_cast<Factory>(factory)(static_cast<ORVPrintInputXMLElement*>(input));
}

constexpr InterpreterRow kInterpreters[] = {
    {"SVG", "libORVPrtInterpreterSVG.so", "fctCreateORVPrintSVGInterpreter", CreateFromAnyInput,
     "_ZN22ORVPrintSVGInterpreter14SetCurrentPathERK16ORVUnicodeString"},
    {"QVXML", "libORVPrtInterpreterSVG.so", "fctCreateORVPrintQVXMLInterpreter", CreateFromXMLElement,
     "_ZN24ORVPrintQVXMLInterpreter14SetCurrentPathERK16ORVUnicodeString"},
    {"SVG2", "libORVPrtInterpreterSVG2.so", "fctCreateORVPrintSVG2Interpreter", CreateFromAnyInput,
     "_ZN23ORVPrintSVG2Interpreter14SetCurrentPathERK16ORVUnicodeString"},
};

const InterpreterRow* FindRow(const std::string& name) {
    for (const InterpreterRow& row : kInterpreters)
        if (name == row.name) return &row;
    return nullptr;
}

std::unique_ptr<ORVPrintInterpreter> Create(const std::string& name, ORVPrintInput* input,
                                            ORVFailure& failure) {
    failure.reason = ORVFailureReason::kNoModule;
    std::string& error = failure.text;
    const InterpreterRow* row = FindRow(name);
    if (!row) {
        error = "no interpreter is called " + name;
        return nullptr;
    }
    void* module = ORVLoadModule(row->library, error);
    if (!module) return nullptr;
    void* factory = ORVFindInModule(module, row->factory, error);
    if (!factory) {
        error = std::string(row->library) + ": " + error;
        return nullptr;
    }
    std::unique_ptr<ORVPrintInterpreter> interpreter(row->create(factory, input));
    if (!interpreter)
        failure = ORVFailure::Of(ORVFailureReason::kOutOfMemory,
                                 "the interpreter " + name + " does not accept this input, or out of memory");
    return interpreter;
}

int TellPath(const std::string& name, ORVPrintInterpreter& interpreter, const ORVUnicodeString& path) {
    const InterpreterRow* row = FindRow(name);
    std::string error;
    void* module = row ? ORVLoadModule(row->library, error) : nullptr;
    void* operation = module ? ORVFindInModule(module, row->setCurrentPath, error) : nullptr;
    if (!operation) return 0;
    // A non-virtual member function is called as a function whose first argument is the object. Interpreter
    // classes have a single base, so the object's address is that of the base.
    using Operation = int (*)(ORVPrintInterpreter*, const ORVUnicodeString&);
    return reinterpret_cast<Operation>(operation)(&interpreter, path);
}

}  // namespace

std::unique_ptr<ORVPrintInterpreter> ORVPrintModule::CreateInterpreter(const std::string& name,
                                                                       ORVPrintInput* input,
                                                                       std::string& error) {
    ORVFailure failure;
    std::unique_ptr<ORVPrintInterpreter> interpreter = CreateInterpreter(name, input, failure);
    error = std::move(failure.text);
    return interpreter;
}

std::unique_ptr<ORVPrintInterpreter> ORVPrintModule::CreateInterpreter(const std::string& name,
                                                                       ORVPrintInput* input,
                                                                       ORVFailure& failure) {
    try {
        failure = ORVFailure();
        auto interpreter = Create(name, input, failure);
        if (interpreter) failure = ORVFailure();
        return interpreter;
    } catch (const std::exception&) {
        failure = ORVFailure::OutOfMemory();
        return nullptr;
    }
}

int ORVPrintModule::SetCurrentPath(const std::string& name, ORVPrintInterpreter& interpreter,
                                   const ORVUnicodeString& path) {
    try {
        return TellPath(name, interpreter, path);
    } catch (const std::exception&) {
        return 0;
    }
}
