// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Makes the modules known that the command has linked in: both interpreters, fonts, PostScript, colours,
/// images and printers. Without files to find, map and relocate, the command starts in half of the time.
/// To be called first of all.
void UseLinkedModules();
