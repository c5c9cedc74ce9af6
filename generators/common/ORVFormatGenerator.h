// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "generators/common/export.h"
#include "platform/system/ORVFailure.h"

class ORVPrintGenerator;

/// A generator of an output format, and the error it ended with.
class ORV_GENERATORS_EXPORT ORVFormatGenerator {
public:
    virtual ~ORVFormatGenerator() = default;
    /// The generator; owned by this object.
    virtual ORVPrintGenerator& Get() = 0;
    /// The error, if any. Errors of the output are reported by the output itself.
    virtual const ORVFailure& GetFailure() const = 0;
    /// Text of the error; empty if there is none.
    const std::string& GetError() const { return GetFailure().text; }
};
