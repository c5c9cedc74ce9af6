// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "apps/orvprint/process/exit_codes.h"

/// Name of an input or output in messages: "-" is a standard stream.
std::string DisplayName(const std::string& path, std::string_view standardStream);

/// Writes "orvprint: SUBJECT: REASON" to standard error. @return `code`
int Report(ExitCode code, const std::string& subject, const std::string& reason);

/// Why text cannot be set, as a reason for Report: what is missing, and what to do.
std::string TextCannotBeSet();
