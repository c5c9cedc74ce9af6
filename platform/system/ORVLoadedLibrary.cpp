// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVLoadedLibrary.h"

#include <dlfcn.h>

ORVLoadedLibrary::ORVLoadedLibrary(const char* name) : handle_(dlopen(name, RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_) error_ = std::string("the library ") + name + " that is needed here cannot be loaded";
}

void* ORVLoadedLibrary::FindAddress(const char* name) {
    void* address = handle_ ? dlsym(handle_, name) : nullptr;
    if (!address && error_.empty()) error_ = std::string("a library that is needed here lacks ") + name;
    return address;
}
