// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The service's log: JSON lines on standard error. If they are not read fast enough, lines are dropped and
/// counted; logging never blocks.
class ServiceLog {
public:
    struct Job {
        std::uint64_t id = 0;
        std::string path, name;
        int status = 0;  ///< HTTP status; 0 if the client had disconnected
        int code = 0;
        std::size_t received = 0, sent = 0;  ///< bytes
        double waited = 0.0, worked = 0.0;   ///< seconds
        unsigned int attempts = 0;
        std::string message;
    };
    void Write(const Job& job);
    /// Logs any other event.
    /// @param level  "info" or "error"
    void Write(const char* level, std::string_view event, const std::string& message);

    std::uint64_t CountLost() const { return lost_; }

private:
    void Put(std::string line);

    std::uint64_t lost_ = 0;
};
