// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "library/check/checked_document.h"
#include "library/check/findings.h"
#include "library/dump/json_writer.h"
#include "library/input/drawings.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVLightXml.h"
#include "platform/xml/ORVXmlTree.h"

/// What became of one input.
struct CheckedInput {
    int failure = kResultDone;  ///< a result; the findings count only when it is kResultDone
    ORVXmlError error;          ///< for kResultNotWellFormed
    bool hasPxSize = false;     ///< a size in px, where a px is not that of other programs
};

/// A document with what the check says about it; both live only during the call.
/// @return a result
using CheckedUse = std::function<int(const CheckedDocument& document, const ORVRef<const ORVXmlTree>& tree,
                                     const Findings& findings)>;

/// Checks a document. Files are read as far as the access policy of the thread allows.
/// @param bytes  unpacked; must outlive the call
/// @param use    gets the document with its findings, unless it cannot be read; may be empty
CheckedInput CheckBytes(const InputOrigin& origin, const DrawingOptions& options, std::string_view bytes,
                        Findings& findings, const CheckedUse& use = {});

/// Writes what was found of an input as one object.
/// @param file  what the object calls the input
void WriteCheckJson(JsonWriter& json, const std::string& file, const CheckedInput& input,
                    const Findings& findings);
