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
/// The limit in bytes if memory use is so close to it that a failed allocation was probably caused by it,
/// otherwise 0. Allocates nothing.
std::uint64_t GetMemoryLimitReached();
