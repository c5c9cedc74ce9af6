// SPDX-License-Identifier: Apache-2.0
#include "tests/support/scoped_environment.h"

#include <cstdlib>

ScopedEnvironment::ScopedEnvironment(const char* name, const char* value) : name_(name) {
    const char* old = std::getenv(name);
    wasSet_ = old != nullptr;
    if (old) old_ = old;
    if (value) {
        setenv(name, value, 1);
    } else {
        unsetenv(name);
    }
}

ScopedEnvironment::~ScopedEnvironment() {
    if (wasSet_) {
        setenv(name_.c_str(), old_.c_str(), 1);
    } else {
        unsetenv(name_.c_str());
    }
}
