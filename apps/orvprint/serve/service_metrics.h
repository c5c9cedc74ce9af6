// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

/// The metrics of the service, in the text format of Prometheus.
class ServiceMetrics {
public:
    /// A job was answered.
    void AddJob(int code, double waited, double worked, std::size_t received, std::size_t sent);
    /// A request of any kind was answered.
    void AddAnswer(int status) { ++answers_[status]; }
    void AddCancelled() { ++cancelled_; }
    void AddRetry() { ++retries_; }
    /// A worker was replaced.
    /// @param reason  "age", "limit", "memory", "time", "cancelled" or "crash"
    void AddRestart(const char* reason) { ++restarts_[reason]; }

    /// Current values.
    struct State {
        std::size_t queued = 0, workers = 0, busy = 0, connections = 0;
        std::size_t heldBytes = 0;
        std::uint64_t lostLines = 0;
    };
    std::string Write(const State& state) const;

    /// Average seconds that recent jobs took.
    double GetMeanSeconds() const { return mean_; }

private:
    /// A histogram of seconds.
    struct Histogram {
        static constexpr std::array kBounds{0.001, 0.0025, 0.005, 0.01, 0.025, 0.05, 0.1,
                                            0.25,  0.5,    1.0,   2.5,  5.0,   10.0, 30.0};
        std::array<std::uint64_t, kBounds.size() + 1> counts{};
        double sum = 0.0;

        void Add(double seconds);
        void Write(const char* name, const char* help, std::string& text) const;
    };

    std::map<int, std::uint64_t> jobs_, answers_;
    std::map<std::string, std::uint64_t> restarts_;
    std::uint64_t cancelled_ = 0, retries_ = 0, received_ = 0, sent_ = 0;
    Histogram waited_, worked_;
    double mean_ = 0.0;
};
