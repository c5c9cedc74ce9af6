// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/scratch_folder.h"

/// What a scheduler knows of a job.
struct JobFacts {
    int state = 0;   ///< as IPP numbers them
    int sheets = 0;  ///< that were counted
    std::string name;
    std::string reasons;   ///< of the state, with spaces between
    std::string message;   ///< of the printer, when the job was printed
    bool IsEnded() const;  ///< aborted, cancelled or completed, or stopped by a filter that failed
};

/// A print system of the test's own: a scheduler in the foreground, which knows nobody else's configuration,
/// spool or printers, and listens to a socket in its folder. It ends with the object, and with the process.
/// Its printer "paper" takes PDF of A4 into a file.
class PrivateScheduler {
public:
    /// Why there can be none here; empty if there can.
    static std::string WhyNot();

    PrivateScheduler();
    ~PrivateScheduler();
    PrivateScheduler(const PrivateScheduler&) = delete;
    PrivateScheduler& operator=(const PrivateScheduler&) = delete;

    /// Whether it answers and has its printer; what it said otherwise is in GetLog.
    bool IsReady() const { return isReady_; }
    std::string GetLog() const;

    /// Where "lp -h" finds it.
    std::string GetAddress() const { return PathOf("sock"); }
    /// What the printer got last.
    std::filesystem::path GetOutput() const { return PathOf("out/page.pdf"); }
    std::filesystem::path GetSpool() const { return PathOf("spool"); }
    std::filesystem::path GetTemporaryFolder() const { return PathOf("spool/tmp"); }

    /// The job as it is now.
    JobFacts GetJob(int job) const;
    /// Asks until the job's state is one of those, for as long as such a thing may ever take.
    JobFacts WaitForEnd(int job) const;
    JobFacts WaitForState(int job, int state) const;
    /// Whether processes of the filter run, or of the command behind it.
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
