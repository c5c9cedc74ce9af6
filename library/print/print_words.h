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

/// What options are for. A key that is for something else is refused, as it would have no effect.
enum class WordUse { kReading, kPrinting, kChecking };

/// What an option is for; nothing when there is none of that key.
std::optional<WordUse> UseOfWord(std::string_view key);

/// How documents are read, in words.
struct ReadWords {
    DrawingOptions drawing;
    ORVPrintLimitValues limits;
    bool readsNoFiles = false;  ///< not even images of the document's own folder
};

/// How pages come out, in words.
struct PageWords {
    PageOptions page;    ///< what needs no other option to be understood
    std::string format;  ///< empty: the output's ending tells
    SheetWords sheet;
    SizeWords size;
    std::optional<double> dotsPerInch;
};

/// Everything that can be said by key and value. The keys are the long options of the command, without "--".
struct PrintWords {
    ReadWords read;
    PageWords pages;
    std::set<FindingCode> ignored;  ///< kinds of findings that are left out
};

/// Takes one option. Options that may be repeated add up; of the others the last one counts.
/// @param value  of a switch: "true" or "false", or empty for "true"
/// @return a result; a failure, which names the key, was reported
int SetWord(WordUse use, std::string_view key, const std::string& value, PrintHost& host, PrintWords& words);

/// Makes options of the words.
/// @return a result; a failure was reported
int ReadPageWords(const PageWords& words, bool isStandard, PrintHost& host, PageOptions& options);
