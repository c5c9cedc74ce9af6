// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>

/// Exits a forked process without running the parent's exit handlers or flushing its streams.
[[noreturn]] void LeaveProcess(int code);

/// A process that runs numbered jobs. It lives as long as there are jobs, so that the first job's setup
/// (interpreter, fonts) serves all others, and damage done by a job stays inside it. Its standard error is a
/// pipe to the parent.
class WorkerProcess {
public:
    /// The outcome of a job.
    struct Answer {
        int code = 0;      ///< an exit code
        std::string note;  ///< bytes for the parent
    };
    /// Runs in the worker; must not throw.
    using Work = std::function<Answer(std::uint32_t job)>;

    WorkerProcess() = default;
    ~WorkerProcess() { Kill(); }
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    /// Starts the process. It closes the inherited descriptors of other workers. It ends when this object is
    /// destroyed or the calling thread ends, for whatever reason.
    /// @return false with errno
    bool Start(const Work& work);
    bool IsRunning() const { return pid_ > 0; }

    /// Sends a job.
    /// @return false if the worker has died
    bool Give(std::uint32_t job);
    /// Receives the answer of the job. Call it when the descriptor is readable.
    /// @return false if the worker died instead
    bool TakeResult(Answer& answer);
    /// Reads what the worker has written to standard error so far.
    /// @return false at the end of the stream
    bool TakeErrors(std::string& text);

    int GetResultDescriptor() const { return results_; }
    int GetErrorDescriptor() const { return errors_; }

    struct End {
        std::string words;  ///< how the process ended
        int exitCode = 0;   ///< 0 also after a signal
    };
    /// Decodes a status from waitpid.
    static End EndOf(int status);
    /// Reaps a worker that ended on its own.
    End Reap();
    /// Tells an idle worker to end, and waits for it.
    void Finish();
    /// Kills the worker.
    void Kill();

private:
    void Close();

    pid_t pid_ = -1;
    int jobs_ = -1;     // job requests
    int results_ = -1;  // answers
    int errors_ = -1;
};
