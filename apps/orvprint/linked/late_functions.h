// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "apps/orvprint/linked/late_libraries.h"

// What the build makes of the functions of late libraries that the command calls. Where the processor has no
// such functions, the table is empty and the libraries are linked as usual.

extern const LateLibrary kLateLibraries[];  ///< in the order of their places
extern const std::size_t kLateLibraryCount;
extern bool orvIsLateLoaded[];  ///< one for each library

extern "C" {
/// Addresses of all functions, on pages of their own that are read-only after the start.
extern void* orvLateTable[];
/// What the made functions call until their library is loaded.
void* orvResolveLateFunction(std::size_t place);
}
extern const std::size_t kLateTableSize;  ///< of its pages, in bytes
