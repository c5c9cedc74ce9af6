// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/font_system.h"

#include <link.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <mutex>

#include "platform/system/modules.h"
#include "platform/visualization/fonts/text_failure.h"

namespace {

std::atomic<bool> isIndexUsed{true};

/// True when the host has loaded fontconfig itself, and may have configured it.
bool HostHasFontconfig() {
    const auto isIt = [](dl_phdr_info* library, std::size_t, void*) {
        return std::strstr(library->dlpi_name, "/libfontconfig.so") != nullptr ? 1 : 0;
    };
    return dl_iterate_phdr(isIt, nullptr) != 0;
}

ORVFontSystem* Load(std::string& error) {
    const bool mayUseIndex = isIndexUsed && !HostHasFontconfig();
    void* const module = ORVLoadModule(kFontModule, error);
    void* const factory = module ? ORVFindInModule(module, kFontSystemFactory, error) : nullptr;
    return factory ? reinterpret_cast<ORVFontSystemFactory>(factory)(mayUseIndex) : nullptr;
}

/// Advice for a dynamic linker error.
std::string_view AdviceFor(std::string_view error) {
    // Lack of memory is reported with one of these messages.
    for (const char* words : {"Cannot allocate memory", "failed to map segment", "cannot map"})
        if (error.find(words) != error.npos) return "; more memory is needed";
    if (error.find("Too many open files") != error.npos) return "; allow more open files (ulimit -n)";
    return "; install it, or install orvprint and its libraries anew";
}

/// Loads the module. A failure is retried, since it may be temporary, but only each time the number of calls
/// has doubled: an attempt takes time in the system, and a drawing may contain a hundred thousand texts.
class Loader {
public:
    ORVFontSystem* Get() {
        ORVFontSystem* system = system_.load(std::memory_order_acquire);
        return system ? system : TryAgain();
    }

private:
    ORVFontSystem* TryAgain() {
        const std::lock_guard lock(mutex_);
        ORVFontSystem* system = system_.load(std::memory_order_relaxed);
        if (!system && ++questions_ >= nextTry_) {
            nextTry_ = 2 * questions_;
            std::string error;
            system = Load(error);
            system_.store(system, std::memory_order_release);
            if (!system)
                error_ =
                    std::string(kFontModule) + " cannot be loaded: " + error + std::string(AdviceFor(error));
        }
        if (!system) ORVNoteTextFailure(error_);
        return system;
    }

    std::atomic<ORVFontSystem*> system_{nullptr};
    std::mutex mutex_;  // guards the following
    std::uint64_t questions_ = 0, nextTry_ = 1;
    std::string error_;
};

}  // namespace

ORVFontSystem* ORVGetFontSystem() {
    static Loader* const loader = new Loader;
    return loader->Get();
}

void ORVUseFaceIndex(bool use) { isIndexUsed = use; }
