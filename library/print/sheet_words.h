// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "generators/sheet/ORVSheetGenerator.h"
#include "library/input/PrintHost.h"

/// Options for paper; empty if not given.
struct SheetWords {
    std::optional<std::string> paper, orientation, scale, margin, align, overlap, leastLineWidth;
    std::optional<unsigned int> pagesPerSheet;
    std::optional<double> strokeScale;
    bool isPoster = false, isGrey = false, isMono = false;
};

/// Interprets the options.
/// @param options  set if any option was given; otherwise unchanged, and pages keep their own size
/// @return a result; failures are reported to the host
int ReadSheetWords(const SheetWords& words, PrintHost& host, std::optional<ORVSheetOptions>& options);
