// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The limit of memory (ORVPrintLimit::kMemory), which the system holds this process to: a request past it is
/// refused, as where the machine has no more. Inputs raise it in proportion once they are large. Workers
/// inherit it. There is none in builds with sanitizers.

/// Sets the limit as it is without any input.
void BoundMemory();
/// Raises it for an input, by its bytes as they are stored, or for a file that one names.
void AllowMemoryFor(std::uint64_t inputBytes);
/// The limit in bytes when the process came so near to it that a refused request may well be its doing, else
/// 0. Needs no memory.
std::uint64_t GetMemoryLimitReached();
