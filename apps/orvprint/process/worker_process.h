// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>

/// Ends a forked process without cleaning up what belongs to its parent.
[[noreturn]] void LeaveProcess(int code);

/// A worker process for numbered jobs. It lives as long as there is work, so that the set-up of the first job
/// (interpreter, fonts) is reused, and crashes are contained. Its standard error is a pipe to the parent.
class WorkerProcess {
public:
    /// The result of a job.
    struct Answer {
        int code = 0;      ///< an exit code
        std::string note;  ///< data for the parent process
    };
    /// Runs in the worker; must not throw.
    using Work = std::function<Answer(std::uint32_t job)>;

    WorkerProcess() = default;
    ~WorkerProcess() { Kill(); }
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    /// Starts the process. It closes inherited descriptors of other workers. It ends when this object is
    /// destroyed or the calling thread ends, in whatever way.
    /// @return false with errno set on failure
    bool Start(const Work& work);
    bool IsRunning() const { return pid_ > 0; }

    /// Sends a job. @return false if the worker has ended
    bool Give(std::uint32_t job);
    /// Receives the answer of the job. Must be called when the result descriptor is readable.
    /// @return false if the worker has ended instead
    bool TakeResult(Answer& answer);
    /// Reads what the worker has written to standard error so far. @return false at the end
    bool TakeErrors(std::string& text);

    int GetResultDescriptor() const { return results_; }
    int GetErrorDescriptor() const { return errors_; }

    struct End {
        std::string words;  ///< description
        int exitCode = 0;   ///< 0 also after a signal
    };
    /// Interprets a process status as returned by waitpid.
    static End EndOf(int status);
    /// Reaps a worker that has ended by itself.
    End Reap();
    /// Lets an idle worker end, and waits for it.
    void Finish();
    /// Kills the worker.
    void Kill();

private:
    void Close();

    pid_t pid_ = -1;
    int jobs_ = -1;     // write end
    int results_ = -1;  // read end
    int errors_ = -1;
};
