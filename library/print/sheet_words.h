// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "generators/sheet/ORVSheetGenerator.h"
#include "library/input/PrintHost.h"

/// What is said of paper, in words; what was not said is empty.
struct SheetWords {
    std::optional<std::string> paper, orientation, scale, margin, align, overlap, leastLineWidth;
    std::optional<unsigned int> pagesPerSheet;
    std::optional<double> strokeScale;
    bool isPoster = false, isGrey = false, isMono = false;
};

/// Makes options of the words.
/// @param options  written when something was asked for; untouched when pages are to come out as they are
/// @return a result; a failure was reported
int ReadSheetWords(const SheetWords& words, PrintHost& host, std::optional<ORVSheetOptions>& options);
