// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace CLI {
class App;
}

/// Sets the help format of the command and its subcommands, after all options were added: options in groups,
/// and a usage line with the required arguments.
void PrepareHelp(CLI::App& app);
