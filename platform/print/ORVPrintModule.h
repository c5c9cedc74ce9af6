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
    /// Creates the interpreter for a kind of input: "SVG" or "QVXML" (the latter takes an XML element), or
    /// "SVG2" for standard SVG.
    /// The module is looked for beside the platform's library, then in the system's library path.
    /// @param error  receives what went wrong (one line) when null is returned
    /// @return the interpreter, owned by the caller; null when there is no such module or factory. `input`
    ///         must outlive it
    static std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const std::string& name,
                                                                  ORVPrintInput* input, std::string& error);

    /// The same with the reason: kNoModule, or kOutOfMemory, which is also what an input of the wrong kind
    /// looks like.
    static std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const std::string& name,
                                                                  ORVPrintInput* input, ORVFailure& failure);

    /// Tells an interpreter made under `name` where its document lies, so that it resolves relative
    /// references; needed for inputs that know no path. To be called before the interpreter is asked.
    /// @return 1 when the interpreter took the path, else 0
    static int SetCurrentPath(const std::string& name, ORVPrintInterpreter& interpreter,
                              const ORVUnicodeString& path);
};
