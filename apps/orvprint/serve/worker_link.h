// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "apps/orvprint/serve/fork_server.h"
#include "apps/orvprint/serve/job_protocol.h"

/// The service's connection to a worker. Never blocks: pending data stays buffered.
class WorkerLink {
public:
    enum class State { kNone, kStarting, kIdle, kBusy };
    using Clock = std::chrono::steady_clock;

    WorkerLink() = default;
    ~WorkerLink() { Close(); }
    WorkerLink(const WorkerLink&) = delete;
    WorkerLink& operator=(const WorkerLink&) = delete;

    /// Asks for a new worker. The previous one ends when it is idle.
    /// @return false with errno
    bool Start(ForkServer& server, std::uint64_t id);
    /// Closes the connection.
    void Close();

    std::uint64_t GetId() const { return id_; }
    State GetState() const { return state_; }
    unsigned int GetJobCount() const { return jobCount_; }

    /// Sends a job to an idle worker.
    /// @param body  must stay valid until there is an answer
    void Give(const JobHead& head, const std::string& words, const std::string& body);
    int GetDescriptor() const { return socket_; }
    int GetErrorDescriptor() const { return errors_; }
    /// Events to poll for.
    short GetEvents() const;
    /// Continues sending and receiving.
    /// @return whether the answer is complete
    bool Pump();
    /// Reads what the worker has written to standard error.
    void PumpErrors();

    const AnswerHead& GetAnswer() const { return answer_; }
    std::string TakeBody() { return std::move(body_); }
    /// Messages about the current job, one line each.
    std::string TakeErrors();

private:
    bool Write();
    bool Read();
    bool MakeRoom();
    void CloseSocket();

    std::uint64_t id_ = 0;
    int socket_ = -1, errors_ = -1;
    State state_ = State::kNone;
    unsigned int jobCount_ = 0;
    std::string out_;  // head and words
    const std::string* outBody_ = nullptr;
    std::size_t written_ = 0;
    AnswerHead answer_;
    std::size_t headBytes_ = 0, bodyBytes_ = 0;  // received so far
    std::string body_, text_;
};
