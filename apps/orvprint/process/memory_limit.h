// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The memory limit (ORVPrintLimit::kMemory), enforced by the system for this process: allocations beyond it
/// fail as if memory had run out. Large inputs raise it in proportion. Workers inherit it. Builds with
/// sanitizers have none.

/// Sets the limit for no input.
void BoundMemory();
/// Raises the limit for an input, or for a file it refers to, by its stored size in bytes.
void AllowMemoryFor(std::uint64_t inputBytes);
/// The limit in bytes when the process came so near to it that a refused request may well be its doing, else
/// 0. Needs no memory.
std::uint64_t GetMemoryLimitReached();
