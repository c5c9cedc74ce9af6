// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

// C libraries of the command are loaded on the first call: mapping and relocating all of them would take
// longer than printing a small drawing. For each function called, the build generates a stub
// (cmake/OrvLateFunctions.cmake) that jumps through a table; until the library is loaded, its entries point
// to the loader.

/// A library in the table.
struct LateLibrary {
    const char* name;   ///< soname, such as "libpng16.so.16"
    const char* names;  ///< its functions, each terminated by a zero byte; an empty name ends the list
    std::size_t first;  ///< table index of its first function
};

/// Loads libraries of the table that are not yet loaded. Thread-safe.
/// @param libraries  prefixes of sonames, such as "libcairo.so"; libraries linked normally count as loaded
/// @param error      receives the error (one line) if the result is false
bool LoadLateLibraries(std::initializer_list<std::string_view> libraries, std::string& error);
