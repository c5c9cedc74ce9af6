// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/process/exit_codes.h"
#include "apps/orvprint/serve/HttpFront.h"
#include "apps/orvprint/serve/job_protocol.h"

// The HTTP responses of the service.

/// Why a job has no document, in addition to its exit code.
enum class JobFault { kNone, kOutOfMemory, kTime, kWorker };

/// The HTTP status for an exit code.
int StatusOf(int code, JobFault fault);

/// The response to a failed job: code and message as JSON.
/// @param lines  the command's messages; the first one is the reason
HttpAnswer MakeFailure(int status, int code, const std::vector<std::string>& lines);
HttpAnswer MakeFailure(int status, int code, const std::string& message);

/// The response to a successful job.
/// @param lines  notes
HttpAnswer MakeDocument(const AnswerHead& head, std::string body, const std::vector<std::string>& lines);

/// Splits a worker's standard error into lines without the command's name.
std::vector<std::string> LinesOf(const std::string& text);

/// True if the content type of a request may be that of a drawing.
bool IsDrawingType(const std::string& type);
