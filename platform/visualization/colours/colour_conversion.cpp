// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/colours/colour_conversion.h"

#include <exception>
#include <string>

#include "platform/system/modules.h"

namespace {

ORVColourStatus StatusOfFailure(const std::string& error) {
    // The dynamic linker reports lack of memory only in the text of its message.
    return error.find("llocate memory") == std::string::npos ? ORVColourStatus::kMissing
                                                             : ORVColourStatus::kOutOfMemory;
}

}  // namespace

ORVColourStatus ORVCreateColourConversion(const ORVColourDescription& description, std::size_t pixelCount,
                                          std::unique_ptr<ORVColourConversion>& conversion) {
    try {
        std::string error;
        void* const module = ORVLoadModule(kColourModule, error);
        void* const factory = module ? ORVFindInModule(module, kColourFactory, error) : nullptr;
        if (!factory) return StatusOfFailure(error);
        ORVColourConversion* made = nullptr;
        const ORVColourStatus status =
            reinterpret_cast<ColourFactory>(factory)(description, pixelCount, &made);
        conversion.reset(made);
        return status;
    } catch (const std::exception&) {
        return ORVColourStatus::kOutOfMemory;
    }
}
