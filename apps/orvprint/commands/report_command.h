// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

struct ReportOptions {
    std::vector<std::string> files;  ///< written by BatchReport
    std::string merged, html;        ///< output files; empty for none
    bool asJson = false;
};

/// Merges reports and writes a summary to standard output. Of several records for a drawing with the same
/// content, a successful one is preferred to a failure, and a later one to an earlier one.
/// @return kExitSomeFailed if drawings failed, kExitDone if none did, else the code of a failure that was
///         reported
int RunReport(const ReportOptions& options);
