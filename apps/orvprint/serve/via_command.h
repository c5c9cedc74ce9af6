// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/commands/print_command.h"
#include "apps/orvprint/serve/HttpFront.h"

namespace CLI {
class App;
}

/// Turns the given options into the query of a service.
/// @return an exit code; an option that has no meaning for a service has been reported
int MakeQuery(const CLI::App& app, const PrintOptions& options, HttpWords& words);

/// Prints through a service and writes the result to the output.
/// @param place  path of its socket, or HOST:PORT
/// @return the exit code that printing here would have; a failure has been reported
int PrintVia(const std::string& place, const PrintOptions& options, const HttpWords& words);
