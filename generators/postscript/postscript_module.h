// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "generators/common/ORVFormatGenerator.h"
#include "generators/common/ORVFormatOptions.h"

class ORVOutput;

// PostScript is written with cairo, which takes time to load. It is therefore a module, loaded when the
// format is requested.

inline constexpr char kPostScriptModule[] = "liborvpostscript.so";
inline constexpr char kPostScriptFactory[] = "orvCreatePostScriptGenerator";
/// Type of the module's exported function. @return a generator owned by the caller; null when out of memory
using PostScriptFactory = ORVFormatGenerator* (*)(ORVOutput& output, const ORVFormatOptions& options,
                                                  bool encapsulated);

/// Creates a generator of the module. If the module is missing, the generator fails in BeginDocument with an
/// error that says so.
/// @param encapsulated  EPS with one part per page, instead of one document of all pages
std::unique_ptr<ORVFormatGenerator> LoadPostScriptGenerator(ORVOutput& output,
                                                            const ORVFormatOptions& options,
                                                            bool encapsulated);
