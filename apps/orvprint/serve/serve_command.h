// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apps/orvprint/serve/serve_settings.h"

class CommandOptions;

/// Adds the options of the service to its command, and sets defaults that suit a service.
void AddServeOptions(CommandOptions& command, ServeSettings& settings);

/// Serves until a signal ends it.
/// @return an exit code; a failure has been reported
int RunServe(ServeSettings settings);
