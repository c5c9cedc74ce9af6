// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/commands/print_command.h"
#include "apps/orvprint/serve/HttpFront.h"

namespace CLI {
class App;
}

/// The options that were given as the words of a service's query.
/// @return an exit code; an option that says nothing to a service was reported
int MakeQuery(const CLI::App& app, const PrintOptions& options, HttpWords& words);

/// Has a service print, and puts what comes back into the output.
/// @param place  path of its socket, or HOST:PORT
/// @return the exit code that printing here would have had; a failure was reported
int PrintVia(const std::string& place, const PrintOptions& options, const HttpWords& words);
