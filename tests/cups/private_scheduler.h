// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

/// A job's attributes, as reported by the scheduler.
struct JobFacts {
    int state = 0;   ///< IPP job-state
    int sheets = 0;  ///< sheets completed
    std::string name;
    std::string reasons;   ///< the state reasons, separated by spaces
    std::string message;   ///< printer state message at the time of printing
    bool IsEnded() const;  ///< aborted, cancelled, completed, or stopped by a failed filter
};

/// A print scheduler private to the test: it runs in the foreground with its own configuration, spool and
/// printers, and listens on a socket in its folder. It ends with the object or the process. Its printer
/// "paper" writes A4 PDF to a file.
class PrivateScheduler {
public:
    /// Returns why a scheduler cannot be run here; empty if it can.
    static std::string WhyNot();

    PrivateScheduler();
    ~PrivateScheduler();
    PrivateScheduler(const PrivateScheduler&) = delete;
    PrivateScheduler& operator=(const PrivateScheduler&) = delete;

    /// Whether it responds and has its printer; otherwise GetLog() has the reason.
    bool IsReady() const { return isReady_; }
    std::string GetLog() const;

    /// Returns the address for "lp -h".
    std::string GetAddress() const { return PathOf("sock"); }
    /// Returns the path of the printer's latest output.
    std::filesystem::path GetOutput() const { return PathOf("out/page.pdf"); }
    std::filesystem::path GetSpool() const { return PathOf("spool"); }
    std::filesystem::path GetTemporaryFolder() const { return PathOf("spool/tmp"); }

    /// Returns the current attributes of a job.
    JobFacts GetJob(int job) const;
    /// Polls until the job has ended, up to a generous time limit.
    JobFacts WaitForEnd(int job) const;
    JobFacts WaitForState(int job, int state) const;
    /// Whether processes of the filter, or of the command that it runs, exist.
    bool HasFilters() const;

private:
    std::string PathOf(const std::string& name) const { return folder_.PathOf(name); }
    void CopyPrograms() const;
    void Configure() const;
    bool Start();
    bool AddPrinter() const;
    bool Answers() const;

    ScratchFolder folder_;
    pid_t pid_ = -1;
    bool isReady_ = false;
};
