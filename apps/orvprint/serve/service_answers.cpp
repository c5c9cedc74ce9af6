// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/service_answers.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "apps/orvprint/serve/percent_codes.h"
#include "generators/formats.h"
#include "library/dump/json_writer.h"

namespace {

// The types that programs use for drawings or for arbitrary bytes; the last one is curl's default.
constexpr std::array<std::string_view, 9> kDrawingTypes{"",
                                                        "image/svg+xml",
                                                        "image/svg+xml-compressed",
                                                        "application/xml",
                                                        "text/xml",
                                                        "text/plain",
                                                        "application/gzip",
                                                        "application/octet-stream",
                                                        "application/x-www-form-urlencoded"};

constexpr std::size_t kMostNotes = 10, kMostNoteBytes = 500;

/// A text as a header may contain it: printable ASCII.
std::string HeaderText(std::string_view text) {
    return EncodePercent(text.substr(0, kMostNoteBytes), [](char c) { return c >= ' ' && c < 0x7F; });
}

/// The media type of an output format, or of "json".
std::string TypeOf(std::string_view name) {
    const ORVOutputFormat* const format = ORVFindOutputFormat(name);
    return format ? std::string(format->mediaType) : "application/json";
}

}  // namespace

int StatusOf(int code, JobFault fault) {
    constexpr int kOk = 200, kBadRequest = 400, kUnprocessable = 422, kInternal = 500, kTimeout = 504,
                  kInsufficient = 507;
    if (code == kExitDone) return kOk;
    if (fault == JobFault::kTime) return kTimeout;
    if (fault == JobFault::kOutOfMemory) return kInsufficient;
    if (fault == JobFault::kWorker) return kInternal;
    switch (code) {
        case kExitUsage:
        case kExitUnknownFormat: return kBadRequest;
        case kExitUnwritable:
        case kExitNoModule: return kInternal;
        default: return kUnprocessable;
    }
}

HttpAnswer MakeFailure(int status, int code, const std::vector<std::string>& lines) {
    constexpr int kTooMany = 429, kUnavailable = 503;
    HttpAnswer answer;
    answer.status = status;
    answer.contentType = "application/json";
    if (status == kUnavailable || status == kTooMany) answer.headers.emplace_back("Retry-After", "1");
    JsonWriter json(answer.body);
    json.BeginObject();
    json.Key("code");
    json.Integer(code);
    json.Key("message");
    json.Text(lines.empty() ? std::string_view("failed") : std::string_view(lines.front()));
    if (lines.size() > 1) {
        json.Key("lines");
        json.BeginArray();
        for (const std::string& line : lines) json.Text(line);
        json.EndArray();
    }
    json.EndObject();
    json.LineBreak();
    json.Flush();
    return answer;
}

HttpAnswer MakeFailure(int status, int code, const std::string& message) {
    return MakeFailure(status, code, std::vector<std::string>{message});
}

HttpAnswer MakeDocument(const AnswerHead& head, std::string body, const std::vector<std::string>& lines) {
    HttpAnswer answer;
    answer.contentType = TypeOf({head.format.data(), strnlen(head.format.data(), head.format.size())});
    answer.body = std::move(body);
    if (head.pages > 0) answer.headers.emplace_back("Orvprint-Pages", std::to_string(head.pages));
    if (head.findings != AnswerHead::kNotCounted)
        answer.headers.emplace_back("Orvprint-Findings", std::to_string(head.findings));
    for (std::size_t i = 0; i < std::min(lines.size(), kMostNotes); ++i)
        answer.headers.emplace_back("Orvprint-Note", HeaderText(lines[i]));
    if (lines.size() > kMostNotes)
        answer.headers.emplace_back("Orvprint-Note",
                                    "and " + std::to_string(lines.size() - kMostNotes) + " more");
    return answer;
}

std::vector<std::string> LinesOf(const std::string& text) {
    constexpr std::string_view kOwnName = "orvprint: ";
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find('\n', at), text.size());
        std::string line = text.substr(at, end - at);
        if (line.starts_with(kOwnName)) line.erase(0, kOwnName.size());
        if (!line.empty()) lines.push_back(std::move(line));
        at = end + 1;
    }
    return lines;
}

bool IsDrawingType(const std::string& type) {
    return std::find(kDrawingTypes.begin(), kDrawingTypes.end(), type) != kDrawingTypes.end() ||
           type.ends_with("+xml") || type == "application/x-gzip";
}
