// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "library/check/findings.h"
#include "library/dump/json_writer.h"
#include "library/input/drawings.h"
#include "platform/xml/ORVLightXml.h"

/// What became of one input.
struct CheckedInput {
    int failure = kResultDone;  ///< a result; the findings count only when it is kResultDone
    ORVXmlError error;          ///< for kResultNotWellFormed
    bool hasPxSize = false;     ///< a size in px, where a px is not that of other programs
};

/// Checks a document. Files are read as far as the access policy of the thread allows.
/// @param bytes  unpacked; must outlive the call
CheckedInput CheckBytes(const InputOrigin& origin, const DrawingOptions& options, std::string_view bytes,
                        Findings& findings);

/// Writes what was found of an input as one object.
/// @param file  what the object calls the input
void WriteCheckJson(JsonWriter& json, const std::string& file, const CheckedInput& input,
                    const Findings& findings);
