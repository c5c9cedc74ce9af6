// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Lists the limits with their defaults.
/// @return an exit code
int RunLimits();
