// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/report_summary.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <unordered_map>
#include <utility>

namespace {

constexpr std::size_t kMostSlowest = 10;

bool IsBetter(const BatchRecord& other, const BatchRecord& kept) { return other.IsGood() || !kept.IsGood(); }

bool DiffersInOutputs(const BatchRecord& a, const BatchRecord& b) {
    if (!a.IsGood() || !b.IsGood() || a.options != b.options) return false;
    const bool readTheSame = std::equal(
        a.otherFiles.begin(), a.otherFiles.end(), b.otherFiles.begin(), b.otherFiles.end(),
        [](const BatchRecord::OtherFile& x, const BatchRecord::OtherFile& y) { return x.hash == y.hash; });
    if (!readTheSame) return false;
    return !std::equal(a.outputs.begin(), a.outputs.end(), b.outputs.begin(), b.outputs.end(),
                       [](const BatchRecord::Output& x, const BatchRecord::Output& y) {
                           return x.hash == y.hash && x.bytes == y.bytes;
                       });
}

/// A percentile of the times.
double TimeOf(const std::vector<double>& sorted, double share) {
    if (sorted.empty()) return 0.0;
    return sorted[static_cast<std::size_t>(share * static_cast<double>(sorted.size() - 1))];
}

}  // namespace

std::vector<BatchRecord> MergeRecords(std::vector<BatchRecord> records, std::size_t& repeats,
                                      std::vector<std::string>& conflicts) {
    std::vector<BatchRecord> merged;
    std::unordered_map<std::string, std::size_t> places;
    for (BatchRecord& record : records) {
        std::string key = record.name;
        key.append(1, '\0').append(record.input);
        const auto [place, isNew] = places.emplace(std::move(key), merged.size());
        if (isNew) {
            merged.push_back(std::move(record));
            continue;
        }
        ++repeats;
        BatchRecord& kept = merged[place->second];
        if (DiffersInOutputs(record, kept)) conflicts.push_back(record.name);
        // Unchanged drawings keep the figures of the run that converted them.
        if (IsBetter(record, kept) && !(record.status == BatchRecord::Status::kUnchanged && kept.IsGood()))
            kept = std::move(record);
    }
    // An input that could not be read is a failure of that attempt, not of the drawing that another attempt
    // found.
    std::unordered_map<std::string, bool> isRead;
    for (const BatchRecord& record : merged) isRead[record.name] |= !record.input.empty();
    repeats += std::erase_if(
        merged, [&](const BatchRecord& record) { return record.input.empty() && isRead[record.name]; });
    return merged;
}

ReportSummary Summarize(const std::vector<BatchRecord>& records) {
    ReportSummary summary;
    std::vector<double> times;
    for (const BatchRecord& record : records) {
        switch (record.status) {
            case BatchRecord::Status::kDone: ++summary.done; break;
            case BatchRecord::Status::kUnchanged: ++summary.unchanged; break;
            case BatchRecord::Status::kFailed:
                ++summary.failed;
                summary.failures.push_back(&record);
                break;
        }
        ++summary.codes[record.code];
        summary.pages += record.pages;
        summary.bytes += record.GetBytes();
        summary.findings += record.findings;
        if (record.findings > 0) ++summary.withFindings;
        summary.memory = std::max(summary.memory, record.memory);
        summary.milliseconds += record.milliseconds;
        times.push_back(record.milliseconds);
        summary.slowest.push_back(&record);
    }
    std::sort(times.begin(), times.end());
    summary.median = TimeOf(times, 0.5);
    summary.slowestOfHundred = TimeOf(times, 0.99);
    const std::size_t most = std::min(kMostSlowest, summary.slowest.size());
    std::partial_sort(summary.slowest.begin(), summary.slowest.begin() + static_cast<std::ptrdiff_t>(most),
                      summary.slowest.end(), [](const BatchRecord* a, const BatchRecord* b) {
                          return a->milliseconds > b->milliseconds;
                      });
    summary.slowest.resize(most);
    return summary;
}

std::string FigureOf(double number, int places) {
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%.*f", places, number);
    return text.data();
}
