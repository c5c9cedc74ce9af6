// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "apps/orvprint/commands/batch_report.h"

/// Keeps one record per drawing and content, in order of first occurrence.
/// @param repeats    receives the number of records merged into others
/// @param conflicts  receives the names of drawings with different outputs despite equal content and options
std::vector<BatchRecord> MergeRecords(std::vector<BatchRecord> records, std::size_t& repeats,
                                      std::vector<std::string>& conflicts);

/// Summary of a report.
struct ReportSummary {
    std::size_t done = 0, unchanged = 0, failed = 0;
    /// Number of drawings per exit code.
    std::map<int, std::size_t> codes;
    /// Sums; `memory` is the maximum.
    std::uint64_t pages = 0, bytes = 0, findings = 0, memory = 0;
    /// Number of drawings with findings.
    std::size_t withFindings = 0;
    /// Total; then median and 99th percentile per drawing.
    double milliseconds = 0.0, median = 0.0, slowestOfHundred = 0.0;
    /// Slowest first; failures in order of occurrence.
    std::vector<const BatchRecord*> slowest, failures;
};
ReportSummary Summarize(const std::vector<BatchRecord>& records);

/// Formats a number for people, with this many decimal places.
std::string FigureOf(double number, int places);
