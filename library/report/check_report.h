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

/// Outcome of checking one input.
struct CheckedInput {
    int failure = kResultDone;  ///< a PrintResult; the findings are valid only if it is kResultDone
    ORVXmlError error;          ///< for kResultNotWellFormed
    bool hasPxSize = false;     ///< has a size in px, and its px differs from that of other programs
};

/// Receives a document and its findings; both are valid during the call only.
/// @return a result
using CheckedUse = std::function<int(const CheckedDocument& document, const ORVRef<const ORVXmlTree>& tree,
                                     const Findings& findings)>;

/// Checks a document. Files are read as far as the thread's access policy allows.
/// @param bytes  decompressed; must outlive the call
/// @param use    receives the document and its findings, unless it cannot be read; may be empty
CheckedInput CheckBytes(const InputOrigin& origin, const DrawingOptions& options, std::string_view bytes,
                        Findings& findings, const CheckedUse& use = {});

/// Writes the findings of an input as one object.
/// @param file  the object's name for the input
void WriteCheckJson(JsonWriter& json, const std::string& file, const CheckedInput& input,
                    const Findings& findings);
