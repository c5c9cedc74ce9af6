// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

struct ReportOptions {
    std::vector<std::string> files;  ///< files written by BatchReport
    std::string merged, html;        ///< files to write; empty: none
    bool asJson = false;
};

/// Merges reports and writes a summary to standard output. Of several records of a drawing with the same
/// content, success wins over failure, and a later record over an earlier one.
/// @return kExitSomeFailed if drawings failed, kExitDone if none did, else the code of a failure that has
///         been reported
int RunReport(const ReportOptions& options);
