// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/process/peak_memory.h"
#include "apps/orvprint/serve/job_protocol.h"
#include "apps/orvprint/serve/job_words.h"
#include "apps/orvprint/serve/serve_settings.h"

/// Reads interpreters, fonts and what else every job needs, so that workers that are forked from this process
/// have it. @return an exit code; a failure was reported
int WarmUp(const ServeSettings& settings);

/// A process that prints what it is sent, one job after the other, with few rights. Its standard input and
/// output become memory, its standard error is the service's to read.
class ServeWorker {
public:
    /// @param service  socket to the service
    ServeWorker(const ServeSettings& settings, int service) : settings_(settings), service_(service) {}

    /// Does jobs until there are no more. @return an exit code; a failure was reported
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
