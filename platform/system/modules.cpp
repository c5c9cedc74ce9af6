// SPDX-License-Identifier: Apache-2.0
#include "platform/system/modules.h"

#include <dlfcn.h>

namespace {

/// Folder of the platform's own library with a trailing separator, empty when it is not known.
std::string PlatformFolder() {
    static const char anchor = 0;
    Dl_info info{};
    if (dladdr(&anchor, &info) == 0 || !info.dli_fname) return {};
    const std::string path = info.dli_fname;
    return path.substr(0, path.rfind('/') + 1);
}

}  // namespace

void* ORVLoadModule(const char* library, std::string& error) {
    const std::string folder = PlatformFolder();
    if (!folder.empty()) {
        if (void* module = dlopen((folder + library).c_str(), RTLD_NOW | RTLD_LOCAL)) return module;
        error = dlerror();
    }
    if (void* module = dlopen(library, RTLD_NOW | RTLD_LOCAL)) return module;
    const char* reason = dlerror();
    if (error.empty()) error = reason ? reason : "cannot be loaded";
    return nullptr;
}

void* ORVFindInModule(void* module, const char* name, std::string& error) {
    void* found = dlsym(module, name);
    if (!found) error = std::string("no ") + name + " in the module";
    return found;
}
