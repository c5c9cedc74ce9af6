// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "apps/orvprint/commands/batch_report.h"

/// Keeps one record for each drawing and content, in the order in which the drawings first appear.
/// @param repeats    receives the number of records that were merged into others
/// @param conflicts  receives the names of drawings with different outputs from the same content and options
std::vector<BatchRecord> MergeRecords(std::vector<BatchRecord> records, std::size_t& repeats,
                                      std::vector<std::string>& conflicts);

/// The figures of a report.
struct ReportSummary {
    std::size_t done = 0, unchanged = 0, failed = 0;
    std::map<int, std::size_t> codes;  ///< number of drawings for each exit code
    /// percentiles; the last one is the maximum
    std::uint64_t pages = 0, bytes = 0, findings = 0, memory = 0;
    std::size_t withFindings = 0;                                     ///< drawings
    double milliseconds = 0.0, median = 0.0, slowestOfHundred = 0.0;  ///< of all together; of one drawing
    std::vector<const BatchRecord*> slowest, failures;                ///< slowest first; in their order
};
ReportSummary Summarize(const std::vector<BatchRecord>& records);

/// Formats a number for people, with so many digits after the point.
std::string FigureOf(double number, int places);
