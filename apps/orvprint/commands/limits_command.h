// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Lists the limits, with the values that hold without an option. @return an exit code
int RunLimits();
