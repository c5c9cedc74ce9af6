// SPDX-License-Identifier: Apache-2.0

// For architectures that cmake/OrvLateFunctions.cmake does not support: no library is loaded late.

#include "apps/orvprint/linked/late_functions.h"

const LateLibrary kLateLibraries[] = {{"", "", 0}};
const std::size_t kLateLibraryCount = 0;
bool orvIsLateLoaded[] = {false};
void* orvLateTable[] = {nullptr};
const std::size_t kLateTableSize = 0;
