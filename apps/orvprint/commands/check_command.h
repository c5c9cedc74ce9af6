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
    bool verbose = false;  ///< list all findings, not only the first of each kind
};

/// Reports on standard output, as text or JSON, what will not print as expected. An input that cannot be read
/// is reported, and the others are checked nevertheless.
/// @return the first failure, else kExitFound if there are findings, else kExitDone
int RunCheck(const CheckOptions& options);

/// Checks inputs before they are printed, with a summary on standard error. Standard input is put back, so
/// that it can be read again.
/// @param ignored  kinds of findings that do not count
/// @return kExitDone without findings, kExitFound, or the exit code of a failure that has been reported
int CheckBeforePrinting(const std::vector<std::string>& inputs, const ReadOptions& options,
                        const std::set<FindingCode>& ignored);

/// Checks an input that is read again afterwards: standard input is put back.
/// @param use  returns an exit code
/// @return an exit code; a failure has been reported
int CheckBeforeInspection(const std::string& input, const ReadOptions& options, const CheckedUse& use);

/// Counts the findings of an input without reporting them.
/// @param ignored  kinds that do not count
std::uint64_t CountFindings(const std::string& path, const ReadOptions& options,
                            const std::set<FindingCode>& ignored);
