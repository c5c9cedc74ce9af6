// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// The service's log: a line of JSON each on standard error. Whoever reads it slowly loses lines, which are
/// counted, and holds nobody up.
class ServiceLog {
public:
    struct Job {
        std::uint64_t id = 0;
        std::string path, name;
        int status = 0;  ///< of HTTP; 0 when the client was gone
        int code = 0;
        std::size_t received = 0, sent = 0;  ///< bytes
        double waited = 0.0, worked = 0.0;   ///< seconds
        unsigned int attempts = 0;
        std::string message;
    };
    void Write(const Job& job);
    /// Something else that happened.
    /// @param level  "info" or "error"
    void Write(const char* level, std::string_view event, const std::string& message);

    std::uint64_t CountLost() const { return lost_; }

private:
    void Put(std::string line);

    std::uint64_t lost_ = 0;
};
