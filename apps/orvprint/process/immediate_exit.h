// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// Longest message that is written atomically, in bytes: what a pipe accepts without blocking.
inline constexpr std::size_t kLongestExitMessage = 4096;

/// Writes a message to standard error, removes temporary files and exits with kExitFailed. Async-signal-safe:
/// neither allocates nor takes locks.
/// @param message  a complete line
[[noreturn]] void ExitImmediately(std::string_view message);

/// From now on, an allocation failure that nothing catches, for example in a library built without
/// exceptions, exits this way instead of by SIGABRT.
void ExitImmediatelyWhenOutOfMemory();
