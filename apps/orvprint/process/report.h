// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "apps/orvprint/process/exit_codes.h"
#include "platform/system/ORVFailure.h"

/// Name of an input or output in messages; "-" is the standard stream.
std::string DisplayName(const std::string& path, std::string_view standardStream);

/// Sets what messages call standard input, for example when it carries someone else's file.
/// @param name  empty: "standard input"
void NameStandardInput(const std::string& name);

/// Writes "orvprint: SUBJECT: REASON" to standard error, for failures that only the command knows.
/// @return `code`
int Report(ExitCode code, const std::string& subject, const std::string& reason);

/// The exit code for a failure.
ExitCode ExitCodeOf(ORVFailureReason reason);
/// Writes a failure, and what can be done about it, to standard error.
/// @return its exit code
int Report(const std::string& subject, const ORVFailure& failure);
int ReportOutOfMemory(const std::string& subject);

/// Returns the reason of the last reported failure that had one besides its text, and clears it.
ORVFailureReason TakeReportedReason();
