// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "apps/orvprint/process/exit_codes.h"
#include "platform/system/ORVFailure.h"

/// Name of an input or output in messages: "-" is a standard stream.
std::string DisplayName(const std::string& path, std::string_view standardStream);

/// What messages call standard input from now on, where it brings files of somebody else.
/// @param name  empty for "standard input"
void NameStandardInput(const std::string& name);

/// Writes "orvprint: SUBJECT: REASON" to standard error, for what only the command knows. @return `code`
int Report(ExitCode code, const std::string& subject, const std::string& reason);

/// The exit code of a failure.
ExitCode ExitCodeOf(ORVFailureReason reason);
/// Writes a failure to standard error, and what can be done about it. @return its exit code
int Report(const std::string& subject, const ORVFailure& failure);
int ReportOutOfMemory(const std::string& subject);

/// Why the last failure was reported that had a reason besides its words; forgotten by asking.
ORVFailureReason TakeReportedReason();
