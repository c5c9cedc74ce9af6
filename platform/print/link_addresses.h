// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// True for an address with a scheme that executes code or shows embedded content when it is opened, such as
/// "javascript:". Link writers omit these. Blanks, control characters, and characters that cannot occur in a
/// scheme are ignored, because readers of the output skip them too.
ORV_PLATFORM_EXPORT bool ORVIsScriptAddress(std::string_view address);
