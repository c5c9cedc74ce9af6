// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "library/check/findings.h"
#include "library/print/PrintJob.h"
#include "library/print/sheet_words.h"
#include "library/print/size_words.h"
#include "platform/system/ORVThreadLimits.h"

/// The operation that an option applies to. An option for another operation is rejected, as it would have no
/// effect.
enum class WordUse { kReading, kPrinting, kChecking };

/// The operation that an option applies to; empty for an unknown key.
std::optional<WordUse> UseOfWord(std::string_view key);

/// Options for reading documents.
struct ReadWords {
    DrawingOptions drawing;
    ORVPrintLimitValues limits;
    bool readsNoFiles = false;  ///< not even images from the document's own folder
};

/// Options for printing pages, before they are interpreted together.
struct PageWords {
    PageOptions page;    ///< options that do not depend on others
    std::string format;  ///< empty to derive it from the output's extension
    SheetWords sheet;
    SizeWords size;
    std::optional<double> dotsPerInch;
};

/// All options. The keys are the long options of the command, without "--".
struct PrintWords {
    ReadWords read;
    PageWords pages;
    std::set<FindingCode> ignored;  ///< kinds of findings to leave out
};

/// Sets one option. Repeatable options accumulate; otherwise the last value wins.
/// @param value  for a switch: "true" or "false", or empty for "true"
/// @return a result; a failure, whose message names the key, is reported to the host
int SetWord(WordUse use, std::string_view key, const std::string& value, PrintHost& host, PrintWords& words);

/// Interprets the options.
/// @return a result; failures are reported to the host
int ReadPageWords(const PageWords& words, bool isStandard, PrintHost& host, PageOptions& options);
