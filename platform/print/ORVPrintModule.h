#pragma once

#include <memory>
#include <string>

#include "platform/system/ORVBaseObject.h"

class ORVPrintInput;
class ORVPrintInputXMLElement;
class ORVPrintInterpreter;

/// Finds interpreters by name and loads their modules. A loaded module stays loaded until the process ends.
class ORV_PLATFORM_EXPORT ORVPrintModule {
public:
    /// Creates the interpreter for a kind of input: "SVG" or "QVXML" (the latter takes an XML element).
    /// The module is looked for beside the platform's library, then in the system's library path.
    /// @param error  receives what went wrong (one line) when null is returned
    /// @return the interpreter, owned by the caller; null when there is no such module or factory. `input`
    ///         must outlive it
    static std::unique_ptr<ORVPrintInterpreter> CreateInterpreter(const std::string& name, ORVPrintInput* input,
                                                                  std::string& error);
};
