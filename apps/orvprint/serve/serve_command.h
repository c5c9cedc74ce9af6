// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "apps/orvprint/serve/serve_settings.h"

class CommandOptions;

/// Adds the service's own options to its command, and puts values that suit a service in the place of usual
/// ones.
void AddServeOptions(CommandOptions& command, ServeSettings& settings);

/// Serves until a signal ends it. @return an exit code; a failure was reported
int RunServe(ServeSettings settings);
