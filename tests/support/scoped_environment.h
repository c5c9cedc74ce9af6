// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// Sets or removes an environment variable for its lifetime.
class ScopedEnvironment {
public:
    /// @param value  null to remove the variable
    ScopedEnvironment(const char* name, const char* value);
    ~ScopedEnvironment();
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;

private:
    std::string name_, old_;
    bool wasSet_;
};
