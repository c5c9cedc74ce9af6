// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVFailure.h"
#include "platform/system/ORVUnicodeString.h"

class ORVPrintInput;
class ORVPrintInputXMLElement;
class ORVPrintInterpreter;

/// Finds interpreters by name and loads their modules. A loaded module stays loaded until the process ends.
class ORV_PLATFORM_EXPORT ORVPrintModule {
public:
    /// Creates an interpreter for a kind of input: "SVG", "SVG2" (standard SVG), or "QVXML" (takes an XML
    /// element). The module is searched for in the folder of the platform's library, then in the system's
    /// library path.
    /// @param error  receives a message of one line when null is returned
    /// @return the interpreter, owned by the caller; null when there is no such module or factory. `input`
    /// must outlive it
    static std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const std::string& name,
                                                                  ORVPrintInput* input, std::string& error);

    /// The same with a reason: kNoModule, or kOutOfMemory, which is also reported for an input of the wrong
    /// kind.
    static std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const std::string& name,
                                                                  ORVPrintInput* input, ORVFailure& failure);

    /// Tells an interpreter the path of its document, against which it resolves relative references. Needed
    /// for inputs without a path; must be called before the interpreter is used.
    /// @param name  as passed to CreateInterpreter
    /// @return 1 when the interpreter accepted the path, else 0
    static int SetCurrentPath(const std::string& name, ORVPrintInterpreter& interpreter,
                              const ORVUnicodeString& path);
};
