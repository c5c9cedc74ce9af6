// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// Why a text could not be set as it should: no font, a library that cannot be loaded, a file that cannot be
/// opened. One line that names what is missing and what to do.

/// Notes why, for the calling thread. Needs no memory; what is too long is cut off.
ORV_PLATFORM_EXPORT void ORVNoteTextFailure(std::string_view reason);
/// The reason that the calling thread noted last; empty when there is none.
ORV_PLATFORM_EXPORT std::string_view ORVGetTextFailure();
