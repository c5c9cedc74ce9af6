// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

// Loads C libraries when one of their functions is first called: mapping and relocating them all would take
// longer than printing a small drawing. For each function that is called, the build generates a stub that
// jumps through a table (cmake/OrvLateFunctions.cmake). Until the library is loaded, its slots hold the
// address of the loader.

/// A library in the table.
struct LateLibrary {
    const char* name;  ///< its SONAME, such as "libpng16.so.16"
    /// names of its functions, each terminated by a zero byte; an empty name ends the list
    const char* names;
    std::size_t first;  ///< slot of its first function
};

/// Loads libraries of the table that are not yet loaded. Thread-safe.
/// @param libraries  prefixes of their names, such as "libcairo.so"; normally linked ones count as loaded
/// @param error      receives the error (one line) if false is returned
bool LoadLateLibraries(std::initializer_list<std::string_view> libraries, std::string& error);
