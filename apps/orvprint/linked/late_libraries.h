// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

// The C libraries that the command calls are loaded when they are called for the first time: mapping and
// relocating them all would take longer than printing a small drawing. The build makes a small function for
// each one that is called (cmake/OrvLateFunctions.cmake), which jumps to the address in a table; until the
// library is loaded, that is the address of what loads it.

/// A library of the table.
struct LateLibrary {
    const char* name;   ///< as the dynamic linker looks for it, such as "libpng16.so.16"
    const char* names;  ///< of its functions: each ends with a zero byte, an empty one ends the list
    std::size_t first;  ///< place of the first one's address in the table
};

/// Loads libraries of the table that are not yet loaded. May be called from any thread.
/// @param libraries  beginnings of their names, such as "libcairo.so"; those that are linked as usual count
/// as
///                   loaded
/// @param error      receives what went wrong (one line) when false is returned
bool LoadLateLibraries(std::initializer_list<std::string_view> libraries, std::string& error);
