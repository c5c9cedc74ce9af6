// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/commands/report_summary.h"

/// The HTML page of a report: figures, and the drawings that failed, each with its reason and an image that
/// the browser renders. Refers to nothing but the drawings.
/// @param conflicts  drawings that gave different outputs
/// @param path       of the page; drawings are addressed relative to it
std::string MakeReportPage(const ReportSummary& summary, const std::vector<std::string>& conflicts,
                           const std::string& path);
