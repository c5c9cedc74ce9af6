// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/process/exit_codes.h"
#include "apps/orvprint/serve/HttpFront.h"
#include "apps/orvprint/serve/job_protocol.h"

// What the service says in HTTP.

/// Why a job has no document, besides its exit code.
enum class JobFault { kNone, kOutOfMemory, kTime, kWorker };

/// The status of a job by its exit code.
int StatusOf(int code, JobFault fault);

/// The answer that says why there is no document: code and message as JSON.
/// @param lines  what the command would have written to standard error; the first says why
HttpAnswer MakeFailure(int status, int code, const std::vector<std::string>& lines);
HttpAnswer MakeFailure(int status, int code, const std::string& message);

/// The answer to a job that was done.
/// @param lines  notes
HttpAnswer MakeDocument(const AnswerHead& head, std::string body, const std::vector<std::string>& lines);

/// The lines of a worker's standard error, without the command's name before them.
std::vector<std::string> LinesOf(const std::string& text);

/// Whether a request says that its body may be a drawing.
bool IsDrawingType(const std::string& type);
