// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/report_command.h"

#include <cstdio>
#include <string_view>

#include "apps/orvprint/commands/batch_report.h"
#include "apps/orvprint/commands/report_page.h"
#include "apps/orvprint/commands/report_summary.h"
#include "apps/orvprint/process/report.h"
#include "generators/common/ORVFileOutput.h"
#include "library/dump/json_writer.h"
#include "library/text/printable_text.h"

namespace {

constexpr std::size_t kMostListed = 20;  // failures listed on a terminal

struct MergedReport {
    std::vector<BatchRecord> records;
    std::size_t repeats = 0, unreadable = 0;
    std::vector<std::string> conflicts;
};

int ReadAll(const std::vector<std::string>& files, MergedReport& report) {
    std::vector<BatchRecord> records;
    for (const std::string& file : files)
        if (const int code = ReadReport(file, records, report.unreadable); code != kExitDone) return code;
    report.records = MergeRecords(std::move(records), report.repeats, report.conflicts);
    return kExitDone;
}

/// Written whole or not at all, and never over a report.
int WriteFile(const std::string& path, const std::vector<std::string>& reports,
              const std::vector<std::string>& chunks) {
    ORVFileOutput output(path, false);
    for (const std::string& report : reports) output.Protect(report);
    bool isWritten = output.Prepare() == 1 && output.BeginPart() == 1;
    for (const std::string& chunk : chunks)
        isWritten = isWritten && output.Write(chunk.data(), chunk.size()) == 1;
    isWritten = isWritten && output.EndPart() == 1 && output.Commit() == 1;
    return isWritten ? static_cast<int>(kExitDone) : Report(path, output.GetFailure());
}

int WriteFiles(const ReportOptions& options, const MergedReport& report, const ReportSummary& summary) {
    if (!options.merged.empty()) {
        std::vector<std::string> lines;
        for (const BatchRecord& record : report.records) lines.push_back(LineOf(record));
        if (const int code = WriteFile(options.merged, options.files, lines); code != kExitDone) return code;
    }
    if (options.html.empty()) return kExitDone;
    return WriteFile(options.html, options.files, {MakeReportPage(summary, report.conflicts, options.html)});
}

void Line(const std::string& text) { TextLine(stdout).Put(text).End(); }

void WriteText(const MergedReport& report, const ReportSummary& summary) {
    constexpr double kMegabyte = 1e6;
    Line(std::to_string(report.records.size()) + " drawings: " + std::to_string(summary.done) + " done, " +
         std::to_string(summary.unchanged) + " unchanged, " + std::to_string(summary.failed) + " failed");
    std::string codes = "exit codes:";
    for (const auto& [code, count] : summary.codes)
        codes += " " + std::to_string(code) + " (" + std::to_string(count) + ")";
    Line(codes);
    Line(std::to_string(summary.pages) + " pages, " +
         FigureOf(static_cast<double>(summary.bytes) / kMegabyte, 1) + " MB of output, " +
         std::to_string(summary.findings) + " findings in " + std::to_string(summary.withFindings) +
         " drawings");
    Line(FigureOf(summary.milliseconds / 1000.0, 1) + " s in all; a drawing: median " +
         FigureOf(summary.median, 1) + " ms, 99 % within " + FigureOf(summary.slowestOfHundred, 1) +
         " ms; at most " + FigureOf(static_cast<double>(summary.memory) / kMegabyte, 0) + " MB");
    if (report.repeats > 0) Line(std::to_string(report.repeats) + " records of repeated attempts merged");
    if (report.unreadable > 0) Line(std::to_string(report.unreadable) + " lines are no records");
    for (const std::string& name : report.conflicts) Line("different outputs from the same content: " + name);
    if (!summary.slowest.empty()) Line("slowest:");
    for (const BatchRecord* record : summary.slowest)
        Line("  " + FigureOf(record->milliseconds, 1) + " ms  " + record->name);
    if (!summary.failures.empty()) Line("failed:");
    for (std::size_t i = 0; i < summary.failures.size() && i < kMostListed; ++i)
        Line("  " + summary.failures[i]->name + ": exit code " + std::to_string(summary.failures[i]->code) +
             (summary.failures[i]->message.empty() ? "" : ": " + summary.failures[i]->message));
    if (summary.failures.size() > kMostListed)
        Line("  and " + std::to_string(summary.failures.size() - kMostListed) + " more");
}

void WriteNumber(JsonWriter& json, std::string_view key, std::uint64_t number) {
    json.Key(key);
    json.Integer(static_cast<long long>(number));
}

void WriteJson(const MergedReport& report, const ReportSummary& summary) {
    JsonWriter json(stdout);
    json.BeginObject();
    WriteNumber(json, "drawings", report.records.size());
    WriteNumber(json, "done", summary.done);
    WriteNumber(json, "unchanged", summary.unchanged);
    WriteNumber(json, "failed", summary.failed);
    json.Key("codes");
    json.BeginObject();
    for (const auto& [code, count] : summary.codes) WriteNumber(json, std::to_string(code), count);
    json.EndObject();
    WriteNumber(json, "pages", summary.pages);
    WriteNumber(json, "bytes", summary.bytes);
    WriteNumber(json, "findings", summary.findings);
    WriteNumber(json, "withFindings", summary.withFindings);
    WriteNumber(json, "memory", summary.memory);
    json.Key("milliseconds");
    json.Number(summary.milliseconds);
    json.Key("median");
    json.Number(summary.median);
    WriteNumber(json, "repeats", report.repeats);
    WriteNumber(json, "unreadable", report.unreadable);
    json.Key("conflicts");
    json.BeginArray();
    for (const std::string& name : report.conflicts) json.Text(name);
    json.EndArray();
    for (const auto& [key, records] :
         {std::pair{"slowest", &summary.slowest}, {"failures", &summary.failures}}) {
        json.Key(key);
        json.BeginArray();
        for (const BatchRecord* record : *records) json.Text(record->name);
        json.EndArray();
    }
    json.EndObject();
    json.LineBreak();
}

}  // namespace

int RunReport(const ReportOptions& options) {
    MergedReport report;
    if (const int code = ReadAll(options.files, report); code != kExitDone) return code;
    const ReportSummary summary = Summarize(report.records);
    if (const int code = WriteFiles(options, report, summary); code != kExitDone) return code;
    if (options.asJson)
        WriteJson(report, summary);
    else
        WriteText(report, summary);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return Report(kExitUnwritable, "standard output", "cannot be written");
    return summary.failed > 0 ? kExitSomeFailed : kExitDone;
}
