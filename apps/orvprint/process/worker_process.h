// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <string>

/// Ends a forked process: what the starting process had opened or would do at its end is not its own.
[[noreturn]] void LeaveProcess(int code);

/// A process of its own for numbered jobs. It lives as long as there is work, so that what the first job sets
/// up (the interpreter, fonts) serves all others, and what a job breaks stays within it. Its standard error
/// goes through a pipe to the process that made it.
class WorkerProcess {
public:
    /// What became of a job.
    struct Answer {
        int code = 0;      ///< an exit code
        std::string note;  ///< bytes for the process that gave the job
    };
    /// Done in the worker; throws nothing.
    using Work = std::function<Answer(std::uint32_t job)>;

    WorkerProcess() = default;
    ~WorkerProcess() { Kill(); }
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    /// Starts the process. Descriptors that it inherits and must not keep are those of other workers: they
    /// are closed. It ends when this object goes away, or the thread that calls this, however they end.
    /// @return false with errno
    bool Start(const Work& work);
    bool IsRunning() const { return pid_ > 0; }

    /// Hands over a job. @return false when the worker is gone
    bool Give(std::uint32_t job);
    /// Takes the answer of the job. To be called when the descriptor is readable.
    /// @return false when the worker ended instead
    bool TakeResult(Answer& answer);
    /// Takes what the worker wrote to standard error so far. @return false when there is no more to come
    bool TakeErrors(std::string& text);

    int GetResultDescriptor() const { return results_; }
    int GetErrorDescriptor() const { return errors_; }

    struct End {
        std::string words;  ///< how it ended
        int exitCode = 0;   ///< 0 also when it was a signal
    };
    /// What the status of a process that ended, as waitpid has it, says.
    static End EndOf(int status);
    /// Takes leave of a worker that ended by itself.
    End Reap();
    /// Lets a worker without a job end by itself, and waits until it has.
    void Finish();
    /// Ends the worker at once.
    void Kill();

private:
    void Close();

    pid_t pid_ = -1;
    int jobs_ = -1;     // go in
    int results_ = -1;  // come out
    int errors_ = -1;
};
