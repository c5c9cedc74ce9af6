// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Registers the modules linked into the command: both interpreters, fonts, PostScript, colours, images and
/// printers. Without separate files to find, map and relocate, the command starts in half the time. Must be
/// called first.
void UseLinkedModules();
