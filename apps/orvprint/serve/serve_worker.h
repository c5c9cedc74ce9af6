// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/process/peak_memory.h"
#include "apps/orvprint/serve/job_protocol.h"
#include "apps/orvprint/serve/job_words.h"
#include "apps/orvprint/serve/serve_settings.h"

/// Loads interpreters, fonts and everything else that every job needs, so that workers forked from this
/// process inherit it.
/// @return an exit code; a failure has been reported
int WarmUp(const ServeSettings& settings);

/// A sandboxed process that prints one job after the other. Its standard input and output are in memory; the
/// service reads its standard error.
class ServeWorker {
public:
    /// @param service  socket to the service
    ServeWorker(const ServeSettings& settings, int service) : settings_(settings), service_(service) {}

    /// Runs jobs until the service closes the socket.
    /// @return an exit code; a failure has been reported
    int Live();

private:
    int Prepare();
    bool ReadJob(JobHead& head, HttpWords& words);
    bool ReadBody(std::uint64_t size) const;
    void Do(const JobHead& head, const HttpWords& words, AnswerHead& answer);
    int Print(ServeJob& job, AnswerHead& answer) const;
    static int Check(const ServeJob& job, AnswerHead& answer);
    bool SendAnswer(AnswerHead answer) const;

    const ServeSettings& settings_;
    const int service_;
    unsigned int threads_ = 1;  // of a job
    PeakMemory memory_;
};
