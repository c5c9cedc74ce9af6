// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

#include "apps/orvprint/serve/fork_server.h"
#include "apps/orvprint/serve/job_protocol.h"

/// The service's end of a worker. It never waits: what a worker does not take or give stays where it is.
class WorkerLink {
public:
    enum class State { kNone, kStarting, kIdle, kBusy };
    using Clock = std::chrono::steady_clock;

    WorkerLink() = default;
    ~WorkerLink() { Close(); }
    WorkerLink(const WorkerLink&) = delete;
    WorkerLink& operator=(const WorkerLink&) = delete;

    /// Has a worker started. One that was there ends by itself when it is idle. @return false with errno
    bool Start(ForkServer& server, std::uint64_t id);
    /// Lets go of the worker.
    void Close();

    std::uint64_t GetId() const { return id_; }
    State GetState() const { return state_; }
    unsigned int GetJobCount() const { return jobCount_; }

    /// Gives a job to an idle worker.
    /// @param body  stays where it is until there is an answer
    void Give(const JobHead& head, const std::string& words, const std::string& body);
    int GetDescriptor() const { return socket_; }
    int GetErrorDescriptor() const { return errors_; }
    /// What to poll for.
    short GetEvents() const;
    /// Goes on. @return whether there is an answer
    bool Pump();
    /// Takes what the worker wrote to standard error.
    void PumpErrors();

    const AnswerHead& GetAnswer() const { return answer_; }
    std::string TakeBody() { return std::move(body_); }
    /// Lines without their ends, of the job at work.
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
    std::size_t headBytes_ = 0, bodyBytes_ = 0;  // come so far
    std::string body_, text_;
};
