// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

struct ReportOptions {
    std::vector<std::string> files;  ///< that BatchReport wrote
    std::string merged, html;        ///< files to write; empty for none
    bool asJson = false;
};

/// Merges reports and sums them up on standard output. Of several records of a drawing with the same content,
/// one that is good counts more than a failure, and a later one more than an earlier one.
/// @return kExitSomeFailed when drawings failed, kExitDone when none did, else the code of a failure that was
///         reported
int RunReport(const ReportOptions& options);
