// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/commands/print_command.h"
#include "apps/orvprint/serve/HttpFront.h"
#include "apps/orvprint/serve/serve_settings.h"

/// A job, from the query of its request.
struct ServeJob {
    PrintOptions print;  ///< from standard input to standard output
    std::string name;    ///< name of the drawing in messages
    bool countsFindings = false;
};

/// Parses the query of a request. It may lower limits, but not set what the service decides, such as files
/// that drawings may read.
/// @return an exit code; a failure has been reported
int ReadJobWords(const HttpWords& words, const ServeSettings& settings, ServeJob& job);
