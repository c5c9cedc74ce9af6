// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/system/ORVBaseObject.h"

/// A shared library that is loaded on first use, so that runs that do not need it start faster.
class ORV_PLATFORM_EXPORT ORVLoadedLibrary {
public:
    /// @param name  file name as passed to the dynamic linker, including the version
    explicit ORVLoadedLibrary(const char* name);
    ORVLoadedLibrary(const ORVLoadedLibrary&) = delete;
    ORVLoadedLibrary& operator=(const ORVLoadedLibrary&) = delete;

    /// Looks up a function. If it is missing, the library becomes unusable.
    template <class Function>
    void Find(const char* name, Function*& function) {
        function = reinterpret_cast<Function*>(FindAddress(name));
    }
    /// True when the library and all functions asked for so far are there.
    bool IsUsable() const { return error_.empty(); }
    const std::string& GetError() const { return error_; }

private:
    void* FindAddress(const char* name);

    void* handle_ = nullptr;  // never closed; stays loaded until the process ends
    std::string error_;
};
