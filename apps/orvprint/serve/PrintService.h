// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "apps/orvprint/process/end_signals.h"
#include "apps/orvprint/serve/HttpFront.h"
#include "apps/orvprint/serve/fork_server.h"
#include "apps/orvprint/serve/serve_settings.h"
#include "apps/orvprint/serve/service_answers.h"
#include "apps/orvprint/serve/service_log.h"
#include "apps/orvprint/serve/service_metrics.h"
#include "apps/orvprint/serve/worker_link.h"

/// Receives requests, queues them, passes them to workers, and answers them. Runs in one thread, which never
/// blocks on a single client or worker.
class PrintService final : private HttpUser {
public:
    /// The arguments must outlive the service.
    PrintService(const ServeSettings& settings, ForkServer& forks, HttpFront& front);

    /// Serves until a signal ends it and all accepted jobs have been answered.
    /// @param sockets  listening sockets
    /// @param places   their names in messages
    /// @return an exit code; a failure has been reported
    int Run(const std::vector<int>& sockets, const std::string& places);

private:
    using Clock = WorkerLink::Clock;

    struct Job {
        HttpRequest request;
        JobHead head;
        std::string words;
        std::string name;  // name of the drawing, for the log
        Clock::time_point came, begun;
        unsigned int attempts = 0;
        bool isLeft = false;  // its client has disconnected
    };

    /// A slot for a worker, with the state of the current one.
    struct Slot {
        WorkerLink link;
        std::unique_ptr<Job> job;
        Clock::time_point deadline = Clock::time_point::max();
        bool isTimeUp = false;  // why it was ended
        // time at which the next worker may start after a failure
        Clock::time_point startAt = Clock::time_point::max();
    };

    // ---- called by the front ----
    bool MayCome(const HttpRequest& head, HttpAnswer& refusal) override;
    bool MayGrow(std::size_t more, std::size_t total, HttpAnswer& refusal) override;
    void Take(HttpRequest request) override;
    void Leave(std::uint64_t id) override;
    void Release(std::size_t bytes) override { heldBytes_ -= std::min(bytes, heldBytes_); }

    HttpAnswer Refuse(int status, const std::string& message);
    HttpAnswer RefuseSize();
    HttpAnswer RefuseForNow(int status, const std::string& message);
    HttpAnswer MakeHealth();
    HttpAnswer MakeMetrics();
    unsigned int SecondsUntilFree() const;
    void Send(std::uint64_t id, HttpAnswer answer);

    // ---- workers ----
    int StartWorkers();
    bool StartWorker(Slot& slot);
    void Replace(Slot& slot, const char* reason);
    void GiveJobs();
    void Give(Slot& slot, std::unique_ptr<Job> job);
    void Pump(Slot& slot);
    void TakeAnswer(Slot& slot);
    void TakeEnds();
    void TakeEnd(Slot& slot, int status);
    void FailJob(Slot& slot, int status);
    void Finish(const Job& job, HttpAnswer answer, int code, const std::string& message);
    void FollowClock();

    // ---- the loop ----
    int Loop();
    void Poll();
    int GetTimeout() const;
    bool IsDone() const;
    void BeginStop();

    const ServeSettings& settings_;
    ForkServer& forks_;
    HttpFront& front_;
    EndSignals signals_;
    ServiceLog log_;
    ServiceMetrics metrics_;
    std::vector<std::unique_ptr<Slot>> slots_;
    std::deque<std::unique_ptr<Job>> queue_;
    std::uint64_t lastWorker_ = 0;
    std::size_t heldBytes_ = 0;
    std::string places_;
    unsigned int failedStarts_ = 0;  // in rotation
    bool hasServed_ = false;         // a worker has become ready
    bool isStopping_ = false, isLost_ = false;
    Clock::time_point lastMoment_ = Clock::time_point::max();  // that stopped the service
    std::string failure_;                                      // why no worker starts
};
