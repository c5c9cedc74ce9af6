// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/info_command.h"

#include <array>
#include <cstdio>
#include <string>

#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "library/dump/json_writer.h"
#include "library/text/printable_text.h"

namespace {

constexpr double kMillimetresPerUserUnit = 25.4 / 90.0;

void WriteText(const std::string& name, const std::vector<PageFacts>& pages) {
    TextLine line(stdout);
    line.Put(name).Put(": " + std::to_string(pages.size()) + (pages.size() == 1 ? " page" : " pages")).End();
    unsigned int number = 0;
    for (const PageFacts& page : pages) {
        std::array<char, 256> facts{};
        std::snprintf(facts.data(), facts.size(), "page %u: %g x %g units, ", ++number, page.width,
                      page.height);
        line.Put(facts.data());
        // The largest doubles have 309 digits before the point.
        std::array<char, 1024> size{};
        std::snprintf(size.data(), size.size(), "%.2f x %.2f mm", page.width * kMillimetresPerUserUnit,
                      page.height * kMillimetresPerUserUnit);
        line.Put(size.data());
        if (!page.title.empty()) line.Put(", \"").Put(page.title).Put("\"");
        line.End();
    }
}

void WriteJson(JsonWriter& json, const std::string& name, const std::vector<PageFacts>& pages) {
    json.BeginObject();
    json.Key("file");
    json.Text(name);
    json.Key("pageCount");
    json.Integer(static_cast<long long>(pages.size()));
    json.Key("pages");
    json.BeginArray();
    long long number = 0;
    for (const PageFacts& page : pages) {
        json.LineBreak();
        json.BeginObject();
        json.Key("number");
        json.Integer(++number);
        json.Key("title");
        json.Text(page.title);
        json.Key("width");
        json.Number(page.width);
        json.Key("height");
        json.Number(page.height);
        json.Key("widthMm");
        json.Number(page.width * kMillimetresPerUserUnit);
        json.Key("heightMm");
        json.Number(page.height * kMillimetresPerUserUnit);
        json.EndObject();
    }
    json.EndArray();
    json.EndObject();
    json.LineBreak();
}

int ReadPages(const std::string& input, const ReadOptions& options, std::vector<PageFacts>& pages) {
    return ForEachDrawing(input, options, [&pages](const Drawing& drawing) {
        pages.insert(pages.end(), drawing.pages.begin(), drawing.pages.end());
        return static_cast<int>(kExitDone);
    });
}

}  // namespace

int RunInfo(const std::vector<std::string>& inputs, const ReadOptions& options, bool asJson) {
    DrawingTime time;
    JsonWriter json(stdout);
    const bool isList = asJson && inputs.size() > 1;
    if (isList) json.BeginArray();
    int failure = kExitDone;
    for (const std::string& input : inputs) {
        std::fflush(stdout);  // flush, so that nothing is lost if the time limit ends the process
        time.Begin(DisplayName(input, "standard input"));
        std::vector<PageFacts> pages;
        const int code = ReadPages(input, options, pages);
        if (code != kExitDone && failure == kExitDone) failure = code;
        if (code != kExitDone) continue;
        if (asJson)
            WriteJson(json, input, pages);
        else
            WriteText(DisplayName(input, "standard input"), pages);
    }
    if (isList) {
        json.EndArray();
        json.LineBreak();
    }
    if (asJson) json.Flush();
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        return Report(kExitUnwritable, "standard output", "cannot be written");
    return failure;
}
