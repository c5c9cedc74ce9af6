// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// Maximum length of a message in bytes: a pipe accepts this much at once, without waiting for its reader.
inline constexpr std::size_t kLongestExitMessage = 4096;

/// Exits with kExitFailed after a message on standard error, and removes temporary files. Allocates nothing
/// and takes no lock: signal handlers may call it.
/// @param message  a whole line
[[noreturn]] void ExitImmediately(std::string_view message);

/// From now on, an allocation failure that no handler catches (for instance one inside a noexcept library
/// function) exits like this instead of by a signal.
void ExitImmediatelyWhenOutOfMemory();
