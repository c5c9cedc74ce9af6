// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/job_words.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "apps/orvprint/process/CommandHost.h"
#include "apps/orvprint/process/report.h"
#include "library/print/print_words.h"
#include "platform/system/ORVPrintLimits.h"

namespace {

struct Reading {
    const ServeSettings& settings;
    ServeJob& job;
    PrintWords words;
};

int Refuse(const char* key, const std::string& value, const std::string& reason) {
    return Report(kExitUsage, std::string("--") + key, "'" + value + "' " + reason);
}

template <class Number>
bool ReadNumber(const std::string& text, Number& number) {
    const char* const end = text.data() + text.size();
    const auto [stop, status] = std::from_chars(text.data(), end, number);
    return status == std::errc{} && stop == end && !text.empty();
}

int ReadFlag(const char* key, const std::string& value, bool& flag) {
    if (!value.empty() && value != "true" && value != "false")
        return Refuse(key, value, "is neither true nor false");
    flag = value != "false";
    return kExitDone;
}

int ReadName(const std::string& value, Reading& reading) {
    reading.job.name = value;
    return kExitDone;
}

int ReadCreated(const std::string& value, Reading& reading) {
    std::int64_t seconds = 0;
    reading.job.print.asksForDate = false;
    if (value == "none") return kExitDone;
    if (!ReadNumber(value, seconds))
        return Refuse("created", value, "is neither a number of seconds since 1970 nor none");
    reading.job.print.creationTime = seconds;
    return kExitDone;
}

int ReadFindings(const std::string& value, Reading& reading) {
    return ReadFlag("findings", value, reading.job.countsFindings);
}

int ReadStrict(const std::string& value, Reading& reading) {
    return ReadFlag("strict", value, reading.job.print.strict);
}

int ReadTimeLimit(const std::string& value, Reading& reading) {
    double seconds = 0.0;
    if (!ReadNumber(value, seconds) || !(seconds >= 0.001) || seconds > reading.settings.read.timeLimit)
        return Refuse("time-limit", value,
                      "is not a number of seconds up to " +
                          std::to_string(static_cast<long long>(reading.settings.read.timeLimit)) +
                          ", the limit of the service");
    reading.job.print.read.timeLimit = seconds;
    return kExitDone;
}

/// A job may lower the limits of the service, but not raise them.
int ReadLimit(const std::string& value, Reading& reading) {
    const std::string_view name = std::string_view(value).substr(0, value.find('='));
    const ORVPrintLimits::Row* const row = ORVPrintLimits::Find(name);
    std::uint64_t most = 0;
    if (row && value.size() > name.size() && ReadNumber(value.substr(name.size() + 1), most) &&
        most > ORVPrintLimits::Get(row->limit))
        return Refuse(
            "limit", value,
            "is more than " + std::to_string(ORVPrintLimits::Get(row->limit)) + ", the limit of the service");
    // Invalid values are reported when the limits are applied.
    reading.job.print.read.limits.push_back(value);
    return kExitDone;
}

int ReadNoFileImages(const std::string& value, Reading& /*reading*/) {
    bool isRefused = true;
    if (const int code = ReadFlag("no-file-images", value, isRefused); code != kExitDone) return code;
    return isRefused ? static_cast<int>(kExitDone)
                     : Refuse("no-file-images", value, "does not apply: the service reads no files");
}

int RefuseFolder(const std::string& value, Reading& /*reading*/) {
    return Refuse("allow-dir", value, "does not apply: the service reads no files");
}

int RefuseThreads(const std::string& value, Reading& /*reading*/) {
    return Refuse("threads", value, "does not apply: the service decides on it");
}

struct Row {
    std::string_view key;
    int (*read)(const std::string& value, Reading& reading);
};

// Parameters that the command lacks, or that it has in another form.
constexpr std::array kRows{
    Row{"name", ReadName},
    Row{"created", ReadCreated},
    Row{"findings", ReadFindings},
    Row{"strict", ReadStrict},
    Row{"time-limit", ReadTimeLimit},
    Row{"limit", ReadLimit},
    Row{"no-file-images", ReadNoFileImages},
    Row{"allow-dir", RefuseFolder},
    Row{"threads", RefuseThreads},
};

int ReadWord(const std::string& key, const std::string& value, Reading& reading) {
    const auto* const row =
        std::find_if(kRows.begin(), kRows.end(), [&](const Row& known) { return known.key == key; });
    if (row != kRows.end()) return row->read(value, reading);
    return SetWord(UseOfWord(key).value_or(WordUse::kPrinting), key, value, Host(), reading.words);
}

}  // namespace

int ReadJobWords(const HttpWords& words, const ServeSettings& settings, ServeJob& job) {
    job.print.read = settings.read;
    job.print.inputs = {"-"};
    job.print.output = "-";
    job.print.tellsLoss = true;
    job.print.isInSandbox = true;
    Reading reading{settings, job, {}};
    static_cast<DrawingOptions&>(reading.words.read.drawing) = settings.read;
    reading.words.pages.format = "pdf";
    for (const auto& [key, value] : words)
        if (const int code = ReadWord(key, value, reading); code != kExitDone) return code;
    static_cast<DrawingOptions&>(job.print.read) = reading.words.read.drawing;
    job.print.read.withoutFileImages = true;
    job.print.format = reading.words.pages.format;
    job.print.ignored = reading.words.ignored;
    return ReadPageWords(reading.words.pages, IsStandard(job.print.read), Host(), job.print);
}
