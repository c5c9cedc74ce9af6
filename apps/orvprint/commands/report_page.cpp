// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/report_page.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "generators/svg/xml_text.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostShown = 1000;  // number of failures shown

// The page forbids scripts, whatever names and messages contain.
constexpr std::string_view kHead = R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; img-src *">
<title>Batch report</title>
<style>
:root { color-scheme: light dark; }
body { font: 15px/1.45 system-ui, sans-serif; margin: 2em auto; max-width: 62em; padding: 0 1em; }
h1 { font-size: 1.5em; } h2 { font-size: 1.15em; margin-top: 2em; }
table { border-collapse: collapse; } td, th { padding: .2em 1em .2em 0; text-align: left; vertical-align: top; }
td.number { text-align: right; font-variant-numeric: tabular-nums; }
ul.failures { display: grid; gap: 1em; grid-template-columns: repeat(auto-fill, minmax(17em, 1fr)); list-style: none; padding: 0; }
ul.failures li { border: 1px solid #8888; border-radius: 6px; overflow-wrap: anywhere; padding: .8em; }
ul.failures img { background: #fff; display: block; height: 9em; margin-bottom: .6em; object-fit: contain; width: 100%; }
.name { font-weight: 600; }
</style>
</head>
<body>
)";

/// Escapes text for content and for double-quoted attributes.
std::string Escaped(std::string_view text) {
    std::string escaped;
    AppendXmlText(escaped, text);
    return escaped;
}

/// A path as a relative URL without a scheme.
std::string AddressOf(const std::string& file, const fs::path& folder) {
    std::error_code error;
    const fs::path from = fs::proximate(file, folder.empty() ? fs::path(".") : folder, error);
    std::string address = error || from.is_absolute() ? "" : "./";
    for (const char c : error ? file : from.string()) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = (byte >= '0' && byte <= '9') || (byte >= 'A' && byte <= 'Z') ||
                             (byte >= 'a' && byte <= 'z') ||
                             std::string_view("/-_.~").find(c) != std::string_view::npos;
        if (isPlain) {
            address += c;
            continue;
        }
        std::array<char, 4> digits{};
        std::snprintf(digits.data(), digits.size(), "%%%02X", byte);
        address += digits.data();
    }
    return address;
}

void AddRow(std::string& page, std::string_view name, const std::string& value) {
    page.append("<tr><th>")
        .append(name)
        .append("</th><td class=\"number\">")
        .append(value)
        .append("</td></tr>\n");
}

void AddFigures(std::string& page, const ReportSummary& summary) {
    constexpr double kMegabyte = 1e6;
    page += "<table>\n";
    AddRow(page, "Done", std::to_string(summary.done));
    AddRow(page, "Unchanged", std::to_string(summary.unchanged));
    AddRow(page, "Failed", std::to_string(summary.failed));
    AddRow(page, "Drawings with findings", std::to_string(summary.withFindings));
    AddRow(page, "Pages", std::to_string(summary.pages));
    AddRow(page, "Output, MB", FigureOf(static_cast<double>(summary.bytes) / kMegabyte, 1));
    AddRow(page, "Time of all, s", FigureOf(summary.milliseconds / 1000.0, 1));
    AddRow(page, "Median, ms", FigureOf(summary.median, 1));
    AddRow(page, "99 % within, ms", FigureOf(summary.slowestOfHundred, 1));
    AddRow(page, "Largest memory, MB", FigureOf(static_cast<double>(summary.memory) / kMegabyte, 0));
    page += "</table>\n";
}

void AddFailure(std::string& page, const BatchRecord& failure, const fs::path& folder) {
    page.append("<li><img loading=\"lazy\" alt=\"\" src=\"")
        .append(AddressOf(failure.name, folder))
        .append("\">");
    page.append("<div class=\"name\">").append(Escaped(failure.name)).append("</div>");
    page.append("<div>exit code ").append(std::to_string(failure.code));
    if (failure.attempts > 1) page.append(", ").append(std::to_string(failure.attempts)).append(" attempts");
    page.append("</div><div>").append(Escaped(failure.message)).append("</div></li>\n");
}

}  // namespace

std::string MakeReportPage(const ReportSummary& summary, const std::vector<std::string>& conflicts,
                           const std::string& path) {
    const fs::path folder = fs::path(path).parent_path();
    std::string page(kHead);
    page += "<h1>Batch report</h1>\n";
    AddFigures(page, summary);
    if (!summary.failures.empty()) page += "<h2>Failed</h2>\n<ul class=\"failures\">\n";
    for (std::size_t i = 0; i < summary.failures.size() && i < kMostShown; ++i)
        AddFailure(page, *summary.failures[i], folder);
    if (!summary.failures.empty()) page += "</ul>\n";
    if (summary.failures.size() > kMostShown)
        page += "<p>and " + std::to_string(summary.failures.size() - kMostShown) + " more</p>\n";
    if (!conflicts.empty()) page += "<h2>Different outputs from the same content</h2>\n<ul>\n";
    for (const std::string& name : conflicts) page.append("<li>").append(Escaped(name)).append("</li>\n");
    if (!conflicts.empty()) page += "</ul>\n";
    page += "<h2>Slowest</h2>\n<table>\n";
    for (const BatchRecord* record : summary.slowest)
        AddRow(page, Escaped(record->name), FigureOf(record->milliseconds, 1) + " ms");
    return page + "</table>\n</body>\n</html>\n";
}
