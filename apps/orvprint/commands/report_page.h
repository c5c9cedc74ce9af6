// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/commands/report_summary.h"

/// The page of a report: figures, and the drawings that failed, each with its reason and as the browser shows
/// it. Needs nothing from elsewhere but the drawings.
/// @param conflicts  drawings that gave different outputs
/// @param path       of the page: drawings are named from there
std::string MakeReportPage(const ReportSummary& summary, const std::vector<std::string>& conflicts,
                           const std::string& path);
