// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "apps/orvprint/process/exit_codes.h"
#include "platform/system/ORVFailure.h"

/// Name of an input or output in messages; "-" is a standard stream.
std::string DisplayName(const std::string& path, std::string_view standardStream);

/// Sets the name of standard input in messages, for input provided by someone else.
/// @param name  empty for "standard input"
void NameStandardInput(const std::string& name);

/// Writes "orvprint: SUBJECT: REASON" to standard error, for errors of the command itself. @return `code`
int Report(ExitCode code, const std::string& subject, const std::string& reason);

/// The exit code for a failure.
ExitCode ExitCodeOf(ORVFailureReason reason);
/// Writes a failure to standard error, with advice if there is any. @return its exit code
int Report(const std::string& subject, const ORVFailure& failure);
int ReportOutOfMemory(const std::string& subject);

/// Reason of the last reported failure that had one, and resets it.
ORVFailureReason TakeReportedReason();
