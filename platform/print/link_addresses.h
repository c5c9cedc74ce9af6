// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// True for an address that would run something, or show something that it brings along, where it is opened,
/// such as "javascript:". What writes links leaves those out. Whatever readers pass over on their way to the
/// scheme is passed over here: blanks, control characters, and characters that no scheme has.
ORV_PLATFORM_EXPORT bool ORVIsScriptAddress(std::string_view address);
