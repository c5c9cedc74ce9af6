// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVFailure.h"

/// Says what was thrown. To be called where an exception is being handled; throws nothing: where there is no
/// memory for the words, it says just that.
/// @param failure  replaced; kOutOfMemory or kNotDrawn
void ORVNameException(ORVFailure& failure) noexcept;
