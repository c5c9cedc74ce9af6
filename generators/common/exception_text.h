// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVFailure.h"

/// Describes the exception being handled. May only be called while one is. If memory for the text runs out,
/// that is what it reports.
/// @param failure  replaced; its reason is kOutOfMemory or kNotDrawn
void ORVNameException(ORVFailure& failure) noexcept;
