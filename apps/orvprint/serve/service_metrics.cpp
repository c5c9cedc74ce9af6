// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/service_metrics.h"

#include <algorithm>
#include <charconv>
#include <type_traits>

namespace {

std::string NumberText(double number) {
    std::array<char, 40> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

void Head(const char* name, const char* type, const char* help, std::string& text) {
    text.append("# HELP ").append(name).append(" ").append(help).append("\n# TYPE ").append(name);
    text.append(" ").append(type).append("\n");
}

void Line(const std::string& name, const std::string& value, std::string& text) {
    text.append(name).append(" ").append(value).append("\n");
}

void One(const char* name, const char* type, const char* help, std::uint64_t value, std::string& text) {
    Head(name, type, help, text);
    Line(name, std::to_string(value), text);
}

template <class Counts>
void Many(const char* name, const char* label, const char* help, const Counts& counts, std::string& text) {
    Head(name, "counter", help, text);
    for (const auto& [key, count] : counts) {
        std::string value;
        if constexpr (std::is_same_v<std::remove_cvref_t<decltype(key)>, int>)
            value = std::to_string(key);
        else
            value = key;
        Line(std::string(name) + "{" + label + "=\"" + value + "\"}", std::to_string(count), text);
    }
}

}  // namespace

void ServiceMetrics::Histogram::Add(double seconds) {
    const auto place = std::lower_bound(kBounds.begin(), kBounds.end(), seconds) - kBounds.begin();
    ++counts[static_cast<std::size_t>(place)];
    sum += seconds;
}

void ServiceMetrics::Histogram::Write(const char* name, const char* help, std::string& text) const {
    Head(name, "histogram", help, text);
    std::uint64_t below = 0;
    const std::string bucket = std::string(name) + "_bucket{le=\"";
    for (std::size_t i = 0; i < counts.size(); ++i) {
        below += counts[i];
        Line(bucket + (i < kBounds.size() ? NumberText(kBounds[i]) : "+Inf") + "\"}", std::to_string(below),
             text);
    }
    Line(std::string(name) + "_sum", NumberText(sum), text);
    Line(std::string(name) + "_count", std::to_string(below), text);
}

void ServiceMetrics::AddJob(int code, double waited, double worked, std::size_t received, std::size_t sent) {
    constexpr double kShare = 0.05;  // weight of the latest job in the mean
    ++jobs_[code];
    waited_.Add(waited);
    worked_.Add(worked);
    received_ += received;
    sent_ += sent;
    mean_ = mean_ == 0.0 ? worked : mean_ + kShare * (worked - mean_);
}

std::string ServiceMetrics::Write(const State& state) const {
    std::string text;
    Many("orvprint_jobs_total", "code", "Jobs answered, by exit code.", jobs_, text);
    Many("orvprint_http_answers_total", "status", "Answers, by HTTP status.", answers_, text);
    One("orvprint_jobs_cancelled_total", "counter", "Jobs whose client went away.", cancelled_, text);
    One("orvprint_job_retries_total", "counter", "Jobs given to a second worker.", retries_, text);
    Many("orvprint_worker_restarts_total", "reason", "Workers replaced, by reason.", restarts_, text);
    One("orvprint_queue_length", "gauge", "Jobs that wait for a worker.", state.queued, text);
    One("orvprint_workers", "gauge", "Workers.", state.workers, text);
    One("orvprint_workers_busy", "gauge", "Workers with a job.", state.busy, text);
    One("orvprint_connections", "gauge", "Connections of clients.", state.connections, text);
    One("orvprint_held_bytes", "gauge", "Bytes of drawings and documents in memory.", state.heldBytes, text);
    One("orvprint_received_bytes_total", "counter", "Bytes of drawings.", received_, text);
    One("orvprint_sent_bytes_total", "counter", "Bytes of documents.", sent_, text);
    One("orvprint_log_lines_lost_total", "counter", "Lines that nobody read.", state.lostLines, text);
    waited_.Write("orvprint_job_wait_seconds", "Time in the queue.", text);
    worked_.Write("orvprint_job_seconds", "Time with a worker.", text);
    return text;
}
