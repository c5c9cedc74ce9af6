// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/PrintService.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <utility>

#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/worker_process.h"

namespace {

constexpr int kOk = 200, kNotFound = 404, kBadMethod = 405, kTooLarge = 413, kBadType = 415, kTooMany = 429,
              kUnavailable = 503;
constexpr unsigned int kMostAttempts = 2;
// Time after a job's limit in which its worker should end by itself.
constexpr std::chrono::milliseconds kGrace{1000};
// A job whose client has disconnected may run this long: finishing costs less than a new worker.
constexpr std::chrono::milliseconds kShortJob{50};
constexpr std::chrono::seconds kStartAgain{1}, kLongestStop{60};

double SecondsBetween(WorkerLink::Clock::time_point from, WorkerLink::Clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

/// For a client that has gone away.
HttpAnswer NoAnswer() {
    HttpAnswer answer;
    answer.status = 0;
    return answer;
}

WorkerLink::Clock::duration Seconds(double seconds) {
    return std::chrono::duration_cast<WorkerLink::Clock::duration>(std::chrono::duration<double>(seconds));
}

std::string ValueOf(const HttpWords& words, std::string_view name) {
    for (const auto& [key, value] : words)
        if (key == name) return value;
    return {};
}

bool IsJob(const HttpRequest& request) { return request.path == "/print" || request.path == "/check"; }
bool IsState(const HttpRequest& request) { return request.path == "/health" || request.path == "/metrics"; }

std::string FirstOf(const std::vector<std::string>& lines) {
    return lines.empty() ? std::string() : lines.front();
}

}  // namespace

PrintService::PrintService(const ServeSettings& settings, ForkServer& forks, HttpFront& front)
    : settings_(settings), forks_(forks), front_(front) {
    for (unsigned int i = 0; i < settings.workers; ++i) slots_.push_back(std::make_unique<Slot>());
}

int PrintService::Run(const std::vector<int>& sockets, const std::string& places) {
    if (const int code = StartWorkers(); code != kExitDone) return code;
    HttpSettings http;
    http.mostBodyBytes = settings_.mostRequestBytes;
    http.mostConnections = settings_.mostConnections;
    http.patience = settings_.patience;
    std::string error;
    if (!front_.Start(sockets, http, *this, error)) return Report(kExitFailed, places, error);
    places_ = places;
    const int code = Loop();
    log_.Write(code == kExitDone ? "info" : "error", "ended", failure_);
    return code;
}

// ---- requests ----

bool PrintService::MayCome(const HttpRequest& head, HttpAnswer& refusal) {
    const auto refuse = [&refusal](HttpAnswer answer) {
        refusal = std::move(answer);
        return false;
    };
    if (!IsJob(head) && !IsState(head))
        return refuse(Refuse(kNotFound, head.path + ": there are /print, /check, /health and /metrics"));
    const char* const allowed = IsJob(head) ? "POST" : "GET";
    if (head.method != allowed) {
        refuse(Refuse(kBadMethod, head.path + " takes " + allowed));
        refusal.headers.emplace_back("Allow", allowed);
        return false;
    }
    if (IsState(head)) return true;
    if (isStopping_) return refuse(RefuseForNow(kUnavailable, "the service is stopping"));
    if (!IsDrawingType(head.contentType))
        return refuse(
            Refuse(kBadType, "Content-Type '" + head.contentType +
                                 "' is not that of a drawing, such as image/svg+xml; send it as the body"));
    if (!head.contentCoding.empty() && head.contentCoding != "gzip" && head.contentCoding != "identity")
        return refuse(Refuse(kBadType, "Content-Encoding '" + head.contentCoding + "' is not gzip"));
    return head.length <= settings_.mostRequestBytes || refuse(RefuseSize());
}

bool PrintService::MayGrow(std::size_t more, std::size_t total, HttpAnswer& refusal) {
    const std::uint64_t most = settings_.mostRequestBytes;
    if (total > most) {
        refusal = RefuseSize();
        return false;
    }
    // Bodies of waiting jobs, and documents that clients do not fetch, must not fill the memory.
    constexpr std::uint64_t kLeastHeld = std::uint64_t{256} << 20U;
    if (heldBytes_ + more > std::max(4 * most, kLeastHeld)) {
        refusal = RefuseForNow(kTooMany, "the service holds as many drawings as it may");
        return false;
    }
    heldBytes_ += more;
    return true;
}

void PrintService::Take(HttpRequest request) {
    const std::uint64_t id = request.id;
    if (IsState(request)) return Send(id, request.path == "/health" ? MakeHealth() : MakeMetrics());
    if (queue_.size() >= settings_.queue) {
        return Send(id, RefuseForNow(kTooMany, std::to_string(queue_.size()) +
                                                   " jobs wait, the limit of the service (--queue)"));
    }
    auto job = std::make_unique<Job>();
    job->head.kind = request.path == "/print" ? JobKind::kPrint : JobKind::kCheck;
    job->words = EncodeWords(request.query);
    job->head.wordBytes = static_cast<std::uint32_t>(job->words.size());
    job->head.bodyBytes = request.body.size();
    job->name = ValueOf(request.query, "name");
    job->came = Clock::now();
    job->request = std::move(request);
    queue_.push_back(std::move(job));
    GiveJobs();
}

void PrintService::Leave(std::uint64_t id) {
    const auto isIt = [id](const std::unique_ptr<Job>& job) { return job && job->request.id == id; };
    if (const auto waiting = std::find_if(queue_.begin(), queue_.end(), isIt); waiting != queue_.end()) {
        Finish(**waiting, NoAnswer(), kExitDone, "the client went away");
        queue_.erase(waiting);
        return;
    }
    for (const std::unique_ptr<Slot>& slot : slots_) {
        if (!isIt(slot->job)) continue;
        slot->job->isLeft = true;
        slot->deadline = std::min(slot->deadline, slot->job->begun + kShortJob);
    }
}

HttpAnswer PrintService::Refuse(int status, const std::string& message) {
    metrics_.AddAnswer(status);
    return MakeFailure(status, kExitUsage, message);
}

HttpAnswer PrintService::RefuseSize() {
    return Refuse(kTooLarge, "the drawing has more than " + std::to_string(settings_.mostRequestBytes) +
                                 " bytes, the limit of the service (--max-request)");
}

HttpAnswer PrintService::RefuseForNow(int status, const std::string& message) {
    HttpAnswer answer = MakeFailure(status, kExitFailed, message);
    metrics_.AddAnswer(status);
    for (auto& [name, value] : answer.headers)
        if (name == "Retry-After") value = std::to_string(SecondsUntilFree());
    return answer;
}

HttpAnswer PrintService::MakeHealth() {
    const bool hasWorker = std::any_of(slots_.begin(), slots_.end(), [](const std::unique_ptr<Slot>& slot) {
        return slot->link.GetState() == WorkerLink::State::kIdle ||
               slot->link.GetState() == WorkerLink::State::kBusy;
    });
    HttpAnswer answer;
    answer.status = isStopping_ || !hasWorker ? kUnavailable : kOk;
    answer.contentType = "application/json";
    answer.body = isStopping_  ? "{\"status\":\"stopping\"}\n"
                  : !hasWorker ? "{\"status\":\"no worker\"}\n"
                               : "{\"status\":\"ok\"}\n";
    metrics_.AddAnswer(answer.status);
    return answer;
}

HttpAnswer PrintService::MakeMetrics() {
    ServiceMetrics::State state;
    state.queued = queue_.size();
    state.workers = slots_.size();
    state.busy = static_cast<std::size_t>(
        std::count_if(slots_.begin(), slots_.end(), [](const auto& slot) { return slot->job != nullptr; }));
    state.connections = front_.CountConnections();
    state.heldBytes = heldBytes_;
    state.lostLines = log_.CountLost();
    metrics_.AddAnswer(kOk);
    return {.status = kOk,
            .contentType = "text/plain; version=0.0.4",
            .headers = {},
            .body = metrics_.Write(state)};
}

unsigned int PrintService::SecondsUntilFree() const {
    constexpr double kMost = 60.0;
    const double jobs =
        static_cast<double>(queue_.size()) / static_cast<double>(std::max<std::size_t>(slots_.size(), 1));
    return static_cast<unsigned int>(std::clamp(std::ceil(jobs * metrics_.GetMeanSeconds()), 1.0, kMost));
}

void PrintService::Send(std::uint64_t id, HttpAnswer answer) {
    heldBytes_ += answer.body.size();
    front_.Answer(id, std::move(answer));
}

// ---- workers ----

int PrintService::StartWorkers() {
    for (const std::unique_ptr<Slot>& slot : slots_)
        if (!StartWorker(*slot))
            return Report(kExitFailed, "", std::string("workers: ") + std::strerror(errno));
    return kExitDone;
}

bool PrintService::StartWorker(Slot& slot) {
    slot.deadline = Clock::time_point::max();
    slot.startAt = Clock::time_point::max();
    slot.isTimeUp = false;
    if (slot.link.Start(forks_, ++lastWorker_)) return true;
    slot.startAt = Clock::now() + kStartAgain;
    return false;
}

/// The old worker ends by itself when its connection is closed.
void PrintService::Replace(Slot& slot, const char* reason) {
    metrics_.AddRestart(reason);
    StartWorker(slot);
}

void PrintService::GiveJobs() {
    for (const std::unique_ptr<Slot>& slot : slots_) {
        if (queue_.empty()) return;
        if (slot->job || slot->link.GetState() != WorkerLink::State::kIdle || slot->link.GetDescriptor() < 0)
            continue;
        std::unique_ptr<Job> job = std::move(queue_.front());
        queue_.pop_front();
        Give(*slot, std::move(job));
    }
}

void PrintService::Give(Slot& slot, std::unique_ptr<Job> job) {
    job->begun = Clock::now();
    ++job->attempts;
    slot.isTimeUp = false;
    slot.deadline = job->begun + Seconds(settings_.read.timeLimit) + kGrace;
    slot.job = std::move(job);
    slot.link.Give(slot.job->head, slot.job->words, slot.job->request.body);
    if (slot.link.GetDescriptor() < 0) forks_.Kill(slot.link.GetId());
}

void PrintService::Pump(Slot& slot) {
    const bool isStarting = slot.link.GetState() == WorkerLink::State::kStarting;
    if (slot.link.Pump()) TakeAnswer(slot);
    // The link closes the socket of a worker that violates the protocol.
    if (slot.link.GetDescriptor() < 0 && slot.link.GetState() != WorkerLink::State::kNone)
        forks_.Kill(slot.link.GetId());
    if (isStarting && slot.link.GetState() == WorkerLink::State::kIdle) {
        if (!std::exchange(hasServed_, true)) log_.Write("info", "started", "listening on " + places_);
        failedStarts_ = 0;
    }
}

void PrintService::TakeAnswer(Slot& slot) {
    const AnswerHead head = slot.link.GetAnswer();
    const std::vector<std::string> lines = LinesOf(slot.link.TakeErrors());
    const std::unique_ptr<Job> job = std::move(slot.job);
    slot.deadline = Clock::time_point::max();
    const JobFault fault = head.isOutOfMemory != 0 ? JobFault::kOutOfMemory : JobFault::kNone;
    const int status = StatusOf(head.code, fault);
    const std::string message = FirstOf(lines);
    Finish(*job,
           status == kOk ? MakeDocument(head, slot.link.TakeBody(), lines)
                         : MakeFailure(status, head.code, lines),
           head.code, message);
    if (fault == JobFault::kOutOfMemory || head.isWorn != 0)
        Replace(slot, "memory");
    else if (head.code == kExitFailed || head.code == kExitUnwritable)
        Replace(slot, "limit");
    else if (slot.link.GetJobCount() >= settings_.jobsPerWorker)
        Replace(slot, "age");
}

void PrintService::TakeEnds() {
    ForkServer::End end;
    for (;;) {
        const ForkServer::News news = forks_.Take(end);
        if (news == ForkServer::News::kNone) return;
        if (news == ForkServer::News::kLost) {
            isLost_ = true;
            return;
        }
        for (const std::unique_ptr<Slot>& slot : slots_)
            if (slot->link.GetId() == end.id && slot->link.GetState() != WorkerLink::State::kNone)
                TakeEnd(*slot, end.status);
    }
}

void PrintService::TakeEnd(Slot& slot, int status) {
    // Its last answer may still be in the socket.
    const std::uint64_t id = slot.link.GetId();
    Pump(slot);
    if (slot.link.GetId() != id) return;  // the answer caused a replacement
    slot.link.PumpErrors();
    if (slot.job) {
        FailJob(slot, status);
        return;
    }
    if (slot.link.GetState() == WorkerLink::State::kStarting) {
        const std::vector<std::string> lines = LinesOf(slot.link.TakeErrors());
        failure_ = lines.empty() ? "a worker " + WorkerProcess::EndOf(status).words : lines.front();
        log_.Write("error", "worker", failure_);
        ++failedStarts_;
        // If the very first worker cannot start, no other can.
        if (!hasServed_) isLost_ = true;
    }
    metrics_.AddRestart("crash");
    slot.link.Close();
    if (failedStarts_ == 0)
        StartWorker(slot);
    else
        slot.startAt = Clock::now() + kStartAgain;
}

void PrintService::FailJob(Slot& slot, int status) {
    std::unique_ptr<Job> job = std::move(slot.job);
    const WorkerProcess::End end = WorkerProcess::EndOf(status);
    std::vector<std::string> lines = LinesOf(slot.link.TakeErrors());
    const bool isTimeUp = slot.isTimeUp;
    if (job->isLeft) {
        Finish(*job, NoAnswer(), kExitDone, "the client went away");
        return Replace(slot, "cancelled");
    }
    // A worker that runs out of time or memory reports that and exits.
    const bool hasTold = end.exitCode == kExitFailed && !lines.empty();
    if (isTimeUp || hasTold) {
        const bool isTime = isTimeUp || lines.front().find(": takes longer than ") != std::string::npos;
        if (lines.empty()) lines.push_back("takes longer than the limit of the service");
        const JobFault fault = isTime ? JobFault::kTime : JobFault::kOutOfMemory;
        Finish(*job, MakeFailure(StatusOf(kExitFailed, fault), kExitFailed, lines), kExitFailed,
               lines.front());
        return Replace(slot, isTime ? "time" : "memory");
    }
    Replace(slot, "crash");
    if (job->attempts < kMostAttempts) {
        metrics_.AddRetry();
        queue_.push_front(std::move(job));
        return;
    }
    const std::string message = (job->name.empty() ? "drawing" : job->name) + ": the worker " + end.words;
    Finish(*job, MakeFailure(StatusOf(kExitFailed, JobFault::kWorker), kExitFailed, message), kExitFailed,
           message);
}

void PrintService::Finish(const Job& job, HttpAnswer answer, int code, const std::string& message) {
    const Clock::time_point now = Clock::now();
    const bool isBegun = job.attempts > 0;
    ServiceLog::Job line;
    line.id = job.request.id;
    line.path = job.request.path;
    line.name = job.name;
    line.status = job.isLeft ? 0 : answer.status;
    line.code = code;
    line.received = job.head.bodyBytes;
    line.sent = line.status == kOk ? answer.body.size() : 0;
    line.waited = SecondsBetween(job.came, isBegun ? job.begun : now);
    line.worked = isBegun ? SecondsBetween(job.begun, now) : 0.0;
    line.attempts = job.attempts;
    line.message = message;
    if (line.status == 0) {
        metrics_.AddCancelled();
    } else {
        metrics_.AddJob(code, line.waited, line.worked, line.received, line.sent);
        metrics_.AddAnswer(answer.status);
        Send(job.request.id, std::move(answer));
    }
    if (!settings_.isQuiet) log_.Write(line);
}

void PrintService::FollowClock() {
    const Clock::time_point now = Clock::now();
    for (const std::unique_ptr<Slot>& slot : slots_) {
        if (slot->deadline <= now) {
            slot->deadline = Clock::time_point::max();
            slot->isTimeUp = true;
            forks_.Kill(slot->link.GetId());
        }
        if (slot->startAt <= now) StartWorker(*slot);
    }
}

// ---- the loop ----

int PrintService::Loop() {
    while (!IsDone()) {
        Poll();
        if (isLost_) {
            if (failure_.empty()) failure_ = "the process that starts workers has ended";
            return Report(kExitFailed, "", failure_);
        }
    }
    return kExitDone;
}

void PrintService::Poll() {
    std::vector<pollfd> ready{{signals_.GetDescriptor(), POLLIN, 0},
                              {front_.GetDescriptor(), POLLIN, 0},
                              {forks_.GetDescriptor(), POLLIN, 0}};
    const std::size_t first = ready.size();
    for (const std::unique_ptr<Slot>& slot : slots_) {
        ready.push_back({slot->link.GetDescriptor(), slot->link.GetEvents(), 0});
        ready.push_back({slot->link.GetErrorDescriptor(), POLLIN, 0});
    }
    poll(ready.data(), ready.size(), GetTimeout());
    if (ready[0].revents != 0) BeginStop();
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        // The slot may have a new worker by now; pumping an idle one does nothing.
        if (ready[first + 2 * i].revents != 0) Pump(*slots_[i]);
        if (ready[first + 2 * i + 1].revents != 0) slots_[i]->link.PumpErrors();
    }
    if (ready[2].revents != 0) TakeEnds();
    FollowClock();
    GiveJobs();
    front_.Run();
}

int PrintService::GetTimeout() const {
    Clock::time_point next = lastMoment_;
    for (const std::unique_ptr<Slot>& slot : slots_) next = std::min({next, slot->deadline, slot->startAt});
    int timeout = front_.GetTimeout();
    if (next == Clock::time_point::max()) return timeout;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(next - Clock::now()).count();
    const int own = static_cast<int>(std::clamp<long long>(left, 0, 60'000));
    return timeout < 0 ? own : std::min(timeout, own);
}

bool PrintService::IsDone() const {
    return isStopping_ && (front_.CountRequests() == 0 || Clock::now() >= lastMoment_);
}

/// Accepted jobs are answered first, unless a second signal arrives.
void PrintService::BeginStop() {
    signals_.Drain();
    if (isStopping_) {
        lastMoment_ = Clock::now();
        return;
    }
    isStopping_ = true;
    lastMoment_ = Clock::now() + kLongestStop + Seconds(settings_.read.timeLimit);
    log_.Write("info", "stopping", std::to_string(front_.CountRequests()) + " requests are answered first");
    front_.StopListening();
}
