// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/commands/report_summary.h"

/// The HTML page of a report: statistics, and the failed drawings with their reasons and as the browser shows
/// them. It loads nothing but the drawings.
/// @param conflicts  drawings with differing outputs
/// @param path       of the page; links to drawings are relative to it
std::string MakeReportPage(const ReportSummary& summary, const std::vector<std::string>& conflicts,
                           const std::string& path);
