// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "generators/common/export.h"
#include "platform/system/ORVFailure.h"

class ORVPrintGenerator;

/// A generator and its words for what went wrong.
class ORV_GENERATORS_EXPORT ORVFormatGenerator {
public:
    virtual ~ORVFormatGenerator() = default;
    /// The generator, for as long as this object lives.
    virtual ORVPrintGenerator& Get() = 0;
    /// What went wrong; nothing when nothing did, or when it was the output (which then says it).
    virtual const ORVFailure& GetFailure() const = 0;
    /// The same in words.
    const std::string& GetError() const { return GetFailure().text; }
};
