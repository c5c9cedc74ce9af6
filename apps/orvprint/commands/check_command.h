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

/// Tells on standard output what of the inputs will not print as expected, as text or as JSON. An input that
/// cannot be read is reported, and the others are checked all the same.
/// @return the first failure, else kExitFound when there is something, else kExitDone
int RunCheck(const CheckOptions& options);

/// Checks inputs before they are printed, with a summary on standard error. What comes from standard input
/// is put back there, to be read again.
/// @param ignored  kinds of findings that do not count
/// @return kExitDone when nothing was found, kExitFound, or the exit code of a failure that was reported
int CheckBeforePrinting(const std::vector<std::string>& inputs, const ReadOptions& options,
                        const std::set<FindingCode>& ignored);

/// Checks an input that is then read again: what comes from standard input is put back there.
/// @param use  returns an exit code
/// @return an exit code; a failure was reported
int CheckBeforeInspection(const std::string& input, const ReadOptions& options, const CheckedUse& use);

/// How many findings an input has, without a word about them.
/// @param ignored  kinds that do not count
std::uint64_t CountFindings(const std::string& path, const ReadOptions& options,
                            const std::set<FindingCode>& ignored);
