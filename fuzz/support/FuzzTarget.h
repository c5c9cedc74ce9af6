// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

/// One thing that any bytes are fed to. Each source of fuzz/targets defines one; the fuzzer of that name runs
/// it alone, the test suite runs all of them over the inputs that are kept.
class FuzzTarget {
public:
    /// @param name  as the table of targets has it; must outlive the program
    /// @param run   has to return whatever the bytes are, and calls Require for what must be true
    FuzzTarget(std::string_view name, void (*run)(std::string_view bytes));

    std::string_view GetName() const { return name_; }
    void Run(std::string_view bytes) const { run_(bytes); }

    /// All targets of this program.
    static std::span<const FuzzTarget> GetAll();

    /// Sets the limits of this process so that no input takes long. The last thing a main does before it runs
    /// targets.
    static void SetLimits();

private:
    std::string_view name_;
    void (*run_)(std::string_view bytes);
};

/// Ends the process when `condition` is false, and says where. The place is the caller's when not said.
void Require(bool condition, const char* file = __builtin_FILE(), int line = __builtin_LINE());
