// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "apps/orvprint/input/inputs.h"
#include "library/check/findings.h"
#include "library/report/check_report.h"

struct CheckOptions {
    ReadOptions read;
    std::vector<std::string> inputs;  ///< "-" for standard input
    std::set<FindingCode> ignored;
    bool asJson = false;
    bool verbose = false;  ///< list all findings instead of the first of each kind
};

/// Writes to standard output, as text or JSON, what will not print as expected. Unreadable inputs are
/// reported, and the others are still checked.
/// @return the first failure, else kExitFound if there are findings, else kExitDone
int RunCheck(const CheckOptions& options);

/// Checks inputs before they are printed, with a summary on standard error. Data from standard input is put
/// back, to be read again.
/// @param ignored  kinds of findings that do not count
/// @return kExitDone without findings, kExitFound, or the exit code of a failure that was reported
int CheckBeforePrinting(const std::vector<std::string>& inputs, const ReadOptions& options,
                        const std::set<FindingCode>& ignored);

/// Checks an input that will be read again: data from standard input is put back.
/// @param use  returns an exit code
/// @return an exit code; a failure was reported
int CheckBeforeInspection(const std::string& input, const ReadOptions& options, const CheckedUse& use);

/// Counts the findings of an input without reporting any.
/// @param ignored  kinds that do not count
std::uint64_t CountFindings(const std::string& path, const ReadOptions& options,
                            const std::set<FindingCode>& ignored);
