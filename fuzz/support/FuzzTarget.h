// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

/// A function that accepts arbitrary bytes. Each source of fuzz/targets defines one. The fuzzer of that name
/// runs it alone; the test suite runs all of them over the kept inputs.
class FuzzTarget {
public:
    /// @param name  as in the table of targets; must outlive the program
    /// @param run   must return for any bytes; calls Require for what must hold
    FuzzTarget(std::string_view name, void (*run)(std::string_view bytes));

    std::string_view GetName() const { return name_; }
    void Run(std::string_view bytes) const { run_(bytes); }

    /// Returns all targets of this program.
    static std::span<const FuzzTarget> GetAll();

    /// Sets limits for this process, so that no input takes long. Call it last before running targets.
    static void SetLimits();

private:
    std::string_view name_;
    void (*run_)(std::string_view bytes);
};

/// Aborts the process if `condition` is false, and prints the location (default: the caller's).
void Require(bool condition, const char* file = __builtin_FILE(), int line = __builtin_LINE());
