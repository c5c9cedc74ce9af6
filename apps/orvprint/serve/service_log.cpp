// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/service_log.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "library/dump/json_writer.h"

namespace {

constexpr std::size_t kMostText =
    500;  // maximum bytes of a name or message, so that a line is one write to a pipe

std::string Now() {
    const auto now = std::chrono::system_clock::now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    const auto fraction = std::chrono::duration_cast<std::chrono::milliseconds>(
        now - std::chrono::system_clock::from_time_t(seconds));
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 96> text{};  // for any int in each place
    std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", parts.tm_year + 1900,
                  parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                  static_cast<int>(fraction.count()));
    return text.data();
}

void Text(JsonWriter& json, const char* key, std::string_view text) {
    json.Key(key);
    json.Text(text.substr(0, kMostText));
}

void Integer(JsonWriter& json, const char* key, std::uint64_t number) {
    json.Key(key);
    json.Integer(static_cast<long long>(number));
}

/// Writes milliseconds, rounded to microseconds.
void Milliseconds(JsonWriter& json, const char* key, double seconds) {
    json.Key(key);
    json.Number(std::round(seconds * 1e6) / 1e3);
}

}  // namespace

void ServiceLog::Write(const Job& job) {
    std::string line;
    JsonWriter json(line);
    json.BeginObject();
    Text(json, "time", Now());
    Text(json, "level", job.status >= 500 ? "error" : "info");
    Text(json, "event", "job");
    Integer(json, "id", job.id);
    Text(json, "path", job.path);
    if (!job.name.empty()) Text(json, "name", job.name);
    Integer(json, "status", static_cast<std::uint64_t>(job.status));
    Integer(json, "code", static_cast<std::uint64_t>(job.code));
    Integer(json, "received", job.received);
    Integer(json, "sent", job.sent);
    Milliseconds(json, "waitedMs", job.waited);
    Milliseconds(json, "workedMs", job.worked);
    Integer(json, "attempts", job.attempts);
    if (!job.message.empty()) Text(json, "message", job.message);
    json.EndObject();
    json.Flush();
    Put(std::move(line));
}

void ServiceLog::Write(const char* level, std::string_view event, const std::string& message) {
    std::string line;
    JsonWriter json(line);
    json.BeginObject();
    Text(json, "time", Now());
    Text(json, "level", level);
    Text(json, "event", event);
    Text(json, "message", message);
    json.EndObject();
    json.Flush();
    Put(std::move(line));
}

void ServiceLog::Put(std::string line) {
    line += '\n';
    pollfd room{STDERR_FILENO, POLLOUT, 0};
    const bool isWritten =
        poll(&room, 1, 0) > 0 && (room.revents & POLLOUT) != 0 &&
        write(STDERR_FILENO, line.data(), line.size()) == static_cast<ssize_t>(line.size());
    if (!isWritten) ++lost_;
}
