// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "generators/common/ORVFormatGenerator.h"
#include "generators/common/ORVFormatOptions.h"

class ORVOutput;

// PostScript is written through cairo, which takes time to load. So it lives in a library of its own, loaded
// when somebody asks for the format.

inline constexpr char kPostScriptModule[] = "liborvpostscript.so";
inline constexpr char kPostScriptFactory[] = "orvCreatePostScriptGenerator";
/// What the module exports under that name. @return a generator that the caller deletes, null when memory is
/// spent
using PostScriptFactory = ORVFormatGenerator* (*)(ORVOutput& output, const ORVFormatOptions& options,
                                                  bool encapsulated);

/// A generator of the module. Where the module is missing, a generator that says so instead of beginning a
/// document.
/// @param encapsulated  EPS, a page a part, instead of one document of all pages
std::unique_ptr<ORVFormatGenerator> LoadPostScriptGenerator(ORVOutput& output,
                                                            const ORVFormatOptions& options,
                                                            bool encapsulated);
