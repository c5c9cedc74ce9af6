// SPDX-License-Identifier: Apache-2.0
#pragma once

namespace CLI {
class App;
}

/// Gives the command and its subcommands, all of whose options are there, the form of their help: options in
/// groups, a usage that tells what is needed.
void PrepareHelp(CLI::App& app);
