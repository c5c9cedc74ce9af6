// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/via_command.h"

#include <rapidjson/document.h>
#include <CLI/CLI.hpp>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>
#include <set>
#include <string_view>
#include <thread>
#include <vector>

#include "apps/orvprint/process/CommandHost.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/serve/http_client.h"
#include "apps/orvprint/serve/percent_codes.h"
#include "generators/common/ORVDescriptorOutput.h"
#include "generators/common/ORVFileOutput.h"
#include "generators/formats.h"
#include "library/print/creation_time.h"
#include "platform/system/ORVPrintLimits.h"

namespace {

// Options that concern the local output, or that the query has in another form.
const std::set<std::string_view> kStaysHere{"via", "output", "force", "format", "quiet", "no-file-images"};
const std::set<std::string_view> kNotThere{
    "allow-dir",  "no-sandbox",   "require-sandbox", "printer",     "copies", "title", "wait",
    "out-dir",    "jobs",         "shard",           "report",      "resume", "retry", "null",
    "files-from", "keep-folders", "max-primitives",  "detect-qvxml"};

bool ReadWhole(const std::string& path, InputBytes& bytes) {
    const int descriptor = path == "-" ? STDIN_FILENO : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isRead = descriptor >= 0 && ReadAll(descriptor, Host(), bytes);
    const int error = errno;
    if (descriptor > STDIN_FILENO) close(descriptor);
    errno = error;
    return isRead;
}

/// Reports a failure of the service as the command would. @return the exit code
int TellFailure(const std::string& place, const HttpAnswer& answer) {
    rapidjson::Document json;
    json.Parse(answer.body.data(), answer.body.size());
    const auto isInteger = [&](const char* name) { return json.HasMember(name) && json[name].IsInt(); };
    if (json.HasParseError() || !json.IsObject() || !isInteger("code") || !json.HasMember("message") ||
        !json["message"].IsString())
        return Report(kExitFailed, place, "answered with HTTP status " + std::to_string(answer.status));
    const auto code = static_cast<ExitCode>(std::clamp(json["code"].GetInt(), 1, 255));
    if (!json.HasMember("lines") || !json["lines"].IsArray())
        return Report(code, "", json["message"].GetString());
    for (const auto& line : json["lines"].GetArray())
        if (line.IsString()) Report(code, "", line.GetString());
    return code;
}

/// Waits as long as the service asks for. @return false if it asks for too long, or not at all
bool WaitAsAsked(const HttpAnswer& answer, std::chrono::seconds& left) {
    constexpr int kTooMany = 429;
    if (answer.status != kTooMany) return false;
    int seconds = 1;
    for (const auto& [name, value] : answer.headers)
        if (name == "Retry-After") std::from_chars(value.data(), value.data() + value.size(), seconds);
    const std::chrono::seconds asked(std::clamp(seconds, 1, 3600));
    if (asked > left) return false;
    left -= asked;
    std::this_thread::sleep_for(asked);
    return true;
}

int WriteOutput(const PrintOptions& options, std::string_view bytes) {
    const bool isStream = options.output == "-";
    const std::string name = DisplayName(options.output, "standard output");
    std::unique_ptr<ORVOutput> output;
    if (isStream) {
        output = std::make_unique<ORVDescriptorOutput>(STDOUT_FILENO);
    } else {
        auto file = std::make_unique<ORVFileOutput>(options.output, false);
        file->Protect(options.inputs.front() == "-" ? "/dev/stdin" : options.inputs.front());
        if (options.keepsFiles) file->KeepFiles();
        output = std::move(file);
    }
    const bool isWritten = output->BeginPart() == 1 && output->Write(bytes.data(), bytes.size()) == 1 &&
                           output->EndPart() == 1 && output->Commit() == 1;
    return isWritten ? static_cast<int>(kExitDone) : Report(name, output->GetFailure());
}

}  // namespace

int MakeQuery(const CLI::App& app, const PrintOptions& options, HttpWords& words) {
    for (const CLI::Option* option : app.get_options()) {
        if (option->count() == 0 || !option->nonpositional()) continue;
        const std::string name =
            option->get_lnames().empty() ? option->get_name() : option->get_lnames().front();
        if (kStaysHere.contains(name)) continue;
        if (kNotThere.contains(name)) return Report(kExitUsage, "--" + name, "does not apply with --via");
        for (const std::string& value : option->results()) words.emplace_back(name, value);
    }
    const ORVOutputFormat* const format = FindFormatFor(options);
    if (!format) return kExitUnknownFormat;
    words.emplace_back("format", format->name);
    if (options.inputs.size() != 1) return Report(kExitUsage, "--via", "takes one drawing at a time");
    words.emplace_back("name", DisplayName(options.inputs.front(), "standard input"));
    const auto time = CreationTime(options.inputs);
    words.emplace_back("created", time ? std::to_string(*time) : "none");
    return kExitDone;
}

int PrintVia(const std::string& place, const PrintOptions& options, const HttpWords& words) {
    const std::string& input = options.inputs.front();
    if (const int code = CheckInput(input); code != kExitDone) return code;
    InputBytes bytes;
    if (!ReadWhole(input, bytes))
        return Report(kExitUnreadable, DisplayName(input, "standard input"), std::strerror(errno));
    const std::string path = PathWithQuery("/print", words);
    constexpr int kOk = 200;
    std::chrono::seconds left(60);
    HttpAnswer answer;
    do {
        answer = HttpAnswer();
        std::string error;
        if (!AskService(place, path, bytes.GetView(), ORVPrintLimits::Get(ORVPrintLimit::kOutputBytes),
                        answer, error))
            return Report(kExitFailed, place, error + "; is orvprint serve running there?");
    } while (WaitAsAsked(answer, left));
    if (answer.status != kOk) return TellFailure(place, answer);
    if (options.tellsLoss)
        for (const auto& [name, value] : answer.headers)
            if (name == "Orvprint-Note") Report(kExitDone, "", DecodePercent(value));
    return WriteOutput(options, answer.body);
}
