// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "apps/orvprint/commands/batch_report.h"

/// Keeps one record of each drawing and content, in the order in which the drawings came first.
/// @param repeats    receives how many records went into others
/// @param conflicts  receives the names of drawings that gave different outputs although content and options
///                   are the same
std::vector<BatchRecord> MergeRecords(std::vector<BatchRecord> records, std::size_t& repeats,
                                      std::vector<std::string>& conflicts);

/// What a report comes to.
struct ReportSummary {
    std::size_t done = 0, unchanged = 0, failed = 0;
    std::map<int, std::size_t> codes;                                 ///< how many drawings ended with a code
    std::uint64_t pages = 0, bytes = 0, findings = 0, memory = 0;     ///< the last: the largest
    std::size_t withFindings = 0;                                     ///< drawings
    double milliseconds = 0.0, median = 0.0, slowestOfHundred = 0.0;  ///< of all together; of one drawing
    std::vector<const BatchRecord*> slowest, failures;                ///< slowest first; in their order
};
ReportSummary Summarize(const std::vector<BatchRecord>& records);

/// A figure as people read it, with so many digits after the period.
std::string FigureOf(double number, int places);
