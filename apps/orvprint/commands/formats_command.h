// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Names of all output formats, such as "pdf, png".
std::string OutputFormatNames(std::string_view separator);

/// Lists the output formats on standard output, one per line.
/// @return an exit code; a failure was reported
int RunFormats();
