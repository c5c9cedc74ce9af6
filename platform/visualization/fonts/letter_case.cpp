// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/letter_case.h"

#include <atomic>
#include <exception>

#include "platform/system/modules.h"
#include "platform/visualization/fonts/text_failure.h"

namespace {

ORVCaseChanger FindChanger(std::string& error) {
    static std::atomic<ORVCaseChanger> known{nullptr};
    if (const ORVCaseChanger changer = known.load(std::memory_order_acquire)) return changer;
    void* const module = ORVLoadModule(kCaseModule, error);
    void* const found = module ? ORVFindInModule(module, kCaseChanger, error) : nullptr;
    const auto changer = reinterpret_cast<ORVCaseChanger>(found);
    known.store(changer, std::memory_order_release);
    return changer;
}

}  // namespace

bool ORVChangeCase(std::string_view text, ORVLetterCase letterCase, std::string_view before,
                   std::string_view language, std::string& mapped) {
    constexpr std::string_view kOutOfMemory = "out of memory when changing the case of letters";
    try {
        std::string error;
        if (const ORVCaseChanger changer = FindChanger(error)) {
            if (changer(text, letterCase, before, language, mapped)) return true;
            ORVNoteTextFailure(kOutOfMemory);
        } else {
            ORVNoteTextFailure(std::string(kCaseModule) +
                               ", which changes the case of letters, cannot be loaded: " + error);
        }
    } catch (const std::exception&) {
        ORVNoteTextFailure(kOutOfMemory);
    }
    return false;
}
