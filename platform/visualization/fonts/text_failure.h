// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// The reason why a text could not be set correctly: no font, or a library or file that cannot be opened. One
/// line that names what is missing and what to do.

/// Notes the reason for the calling thread. Allocates nothing; a long reason is truncated.
ORV_PLATFORM_EXPORT void ORVNoteTextFailure(std::string_view reason);
/// The reason noted last in the calling thread; empty when there is none.
ORV_PLATFORM_EXPORT std::string_view ORVGetTextFailure();
