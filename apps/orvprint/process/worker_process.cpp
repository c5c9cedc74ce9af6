// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/worker_process.h"

#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

#include "apps/orvprint/process/signals.h"
#include "apps/orvprint/process/transfer.h"

namespace {

// Descriptors of all workers, which a new worker inherits and closes: if it kept one open, the end of the
// other process would go unnoticed.
std::vector<int>& OpenDescriptors() {
    static std::vector<int> descriptors;
    return descriptors;
}

void Note(int descriptor) { OpenDescriptors().push_back(descriptor); }

void CloseNoted(int& descriptor) {
    if (descriptor < 0) return;
    std::erase(OpenDescriptors(), descriptor);
    close(std::exchange(descriptor, -1));
}

/// Two descriptors, closed unless they are released.
class Pipe {
public:
    Pipe() = default;
    ~Pipe() {
        const int error = errno;
        for (const int descriptor : ends_)
            if (descriptor >= 0) close(descriptor);
        errno = error;
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;

    /// @return false with errno
    bool Open() { return pipe2(ends_.data(), O_CLOEXEC) == 0; }
    int GetReadEnd() const { return ends_[0]; }
    int GetWriteEnd() const { return ends_[1]; }
    int TakeReadEnd() { return std::exchange(ends_[0], -1); }
    int TakeWriteEnd() { return std::exchange(ends_[1], -1); }

private:
    std::array<int, 2> ends_{-1, -1};
};

/// The header of an answer.
struct NoteHead {
    std::int32_t code = 0;
    std::uint64_t noteSize = 0;
};

/// The main loop of a worker.
[[noreturn]] void Serve(const WorkerProcess::Work& work, pid_t parent, int jobs, int results, int errors) {
    for (const int descriptor : OpenDescriptors()) close(descriptor);
    LeaveTerminalSignalsToParent();
    // A worker whose parent was killed has no one to report to. The parent may have died before the line
    // above.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) LeaveProcess(1);
    if (dup2(errors, STDERR_FILENO) < 0) LeaveProcess(1);
    close(errors);
    for (std::uint32_t job = 0; Receive(jobs, job);) {
        const WorkerProcess::Answer answer = work(job);
        const NoteHead head{answer.code, answer.note.size()};
        if (!Send(results, head) || !SendBytes(results, answer.note.data(), answer.note.size())) break;
    }
    LeaveProcess(0);
}

}  // namespace

void LeaveProcess(int code) {
#if defined(ORV_COVERAGE)
    // Line counters are written by destructors; buffered output inherited from the parent is dropped.
    __fpurge(stdout);
    std::exit(code);
#else
    _exit(code);
#endif
}

bool WorkerProcess::Start(const Work& work) {
    Kill();
    Pipe jobs, results, errors;
    if (!jobs.Open() || !results.Open() || !errors.Open()) return false;
    jobs_ = jobs.TakeWriteEnd();
    results_ = results.TakeReadEnd();
    errors_ = errors.TakeReadEnd();
    for (const int descriptor : {jobs_, results_, errors_}) Note(descriptor);
    fcntl(errors_, F_SETFL, O_NONBLOCK);

    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) Serve(work, parent, jobs.GetReadEnd(), results.GetWriteEnd(), errors.GetWriteEnd());
    const int error = errno;
    if (pid_ < 0) Close();
    errno = error;
    return pid_ > 0;
}

bool WorkerProcess::Give(std::uint32_t job) { return jobs_ >= 0 && Send(jobs_, job); }

bool WorkerProcess::TakeResult(Answer& answer) {
    NoteHead head;
    if (!Receive(results_, head)) return false;
    answer.code = head.code;
    answer.note.resize(head.noteSize);
    return ReceiveBytes(results_, answer.note.data(), head.noteSize);
}

bool WorkerProcess::TakeErrors(std::string& text) {
    std::array<char, 4096> block;
    for (;;) {
        const ssize_t got = read(errors_, block.data(), block.size());
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return true;
        if (got == 0) return false;
        text.append(block.data(), static_cast<std::size_t>(got));
    }
}

WorkerProcess::End WorkerProcess::Reap() {
    int status = 0;
    pid_t ended = waitpid(pid_, &status, 0);
    while (ended < 0 && errno == EINTR) ended = waitpid(pid_, &status, 0);
    pid_ = -1;
    Close();
    if (ended <= 0) return {"ended by itself", 0};
    return EndOf(status);
}

WorkerProcess::End WorkerProcess::EndOf(int status) {
    if (!WIFSIGNALED(status)) return {"ended by itself", WIFEXITED(status) ? WEXITSTATUS(status) : 0};
    const int signal = WTERMSIG(status);
    std::string words = "was ended by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
    if (signal == SIGKILL) words += ", perhaps because memory was short";
    return {words, 0};
}

void WorkerProcess::Finish() {
    CloseNoted(jobs_);
    if (pid_ > 0) Reap();
}

void WorkerProcess::Kill() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) {
        }
        pid_ = -1;
    }
    Close();
}

void WorkerProcess::Close() {
    CloseNoted(jobs_);
    CloseNoted(results_);
    CloseNoted(errors_);
}
