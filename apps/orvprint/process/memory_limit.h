// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// The memory limit (ORVPrintLimit::kMemory), enforced by the system: allocations beyond it fail as if the
/// machine were out of memory. Large inputs raise it in proportion to their size. Workers inherit it. Builds
/// with sanitizers have no limit.

/// Sets the limit for no input at all.
void BoundMemory();
/// Raises the limit for an input, or for a file that a drawing refers to, by its stored size.
void AllowMemoryFor(std::uint64_t inputBytes);
/// The limit in bytes if so little is left of it that it may have caused a failed allocation, else 0. Does
/// not allocate.
std::uint64_t GetMemoryLimitReached();
