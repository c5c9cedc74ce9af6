// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/system/ORVBaseObject.h"

/// A shared library that is loaded when it is needed first: those that few runs use would make the start of
/// all others slow.
class ORV_PLATFORM_EXPORT ORVLoadedLibrary {
public:
    /// @param name  as the dynamic linker knows it, with its version
    explicit ORVLoadedLibrary(const char* name);
    ORVLoadedLibrary(const ORVLoadedLibrary&) = delete;
    ORVLoadedLibrary& operator=(const ORVLoadedLibrary&) = delete;

    /// Finds a function. A missing one makes the library unusable.
    template <class Function>
    void Find(const char* name, Function*& function) {
        function = reinterpret_cast<Function*>(FindAddress(name));
    }
    /// True when the library and all functions asked for so far are there.
    bool IsUsable() const { return error_.empty(); }
    const std::string& GetError() const { return error_; }

private:
    void* FindAddress(const char* name);

    void* handle_ = nullptr;  // stays open as long as the process
    std::string error_;
};
