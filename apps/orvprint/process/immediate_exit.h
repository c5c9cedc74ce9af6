#pragma once

#include <string_view>

/// Longest words that are said whole, in bytes: those that a pipe takes without waiting for its reader.
inline constexpr std::size_t kMostLastWords = 4096;

/// Ends the process with kExitFailed where nothing can go on, after words on standard error, without leaving
/// half a file. Needs no memory and takes no lock: signal handlers may call it.
/// @param words  a whole line
[[noreturn]] void EndSuddenly(std::string_view words);

/// Where an exception about an allocation failure can go nowhere, as in a library that lets none out, the
/// process is to end like this from now on, instead of by a signal.
void EndSuddenlyWithoutMemory();
