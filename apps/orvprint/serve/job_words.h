// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/commands/print_command.h"
#include "apps/orvprint/serve/HttpFront.h"
#include "apps/orvprint/serve/serve_settings.h"

/// A job as its query has it.
struct ServeJob {
    PrintOptions print;  ///< from standard input to standard output
    std::string name;    ///< what messages call the drawing
    bool countsFindings = false;
};

/// Makes a job of the words of a query. Limits can be lowered, and nothing be asked for that is the service's
/// to decide, such as files that drawings may read.
/// @return an exit code; a failure was reported
int ReadJobWords(const HttpWords& words, const ServeSettings& settings, ServeJob& job);
