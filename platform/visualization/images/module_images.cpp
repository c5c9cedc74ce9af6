// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/images/module_images.h"

#include <cstring>
#include <exception>
#include <string>
#include <string_view>

#include "platform/system/modules.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "platform/visualization/images/ORVPixelImageBuilder.h"

namespace {

class BuiltPixels final : public ModuleImagePixels {
public:
    std::uint8_t* Reserve(std::uint64_t width, std::uint64_t height) override {
        if (!builder_.SetSize(width, height)) return nullptr;
        rowCount_ = static_cast<std::size_t>(height);
        return builder_.GetRow(0);
    }
    ORVPixelImage* Finish() {
        for (std::size_t row = 0; row < rowCount_; ++row) builder_.NoteAlpha(row);
        return builder_.Finish();
    }

private:
    ORVPixelImageBuilder builder_;
    std::size_t rowCount_ = 0;
};

bool Has(std::span<const std::uint8_t> bytes, std::size_t at, std::string_view text) {
    return bytes.size() >= at + text.size() && std::memcmp(bytes.data() + at, text.data(), text.size()) == 0;
}

ORVPixelImage* Decode(const void* bytes, std::size_t size) {
    try {
        std::string error;
        void* const module = ORVLoadModule(kImageModule, error);
        void* const reader = module ? ORVFindInModule(module, kImageReader, error) : nullptr;
        if (!reader) return nullptr;
        BuiltPixels pixels;
        switch (reinterpret_cast<ModuleImageReader>(reader)({static_cast<const std::uint8_t*>(bytes), size},
                                                            pixels)) {
            case ModuleImageStatus::kRead: return pixels.Finish();
            case ModuleImageStatus::kOutOfMemory: break;
            case ModuleImageStatus::kUnreadable: return nullptr;
        }
    } catch (const std::exception&) {  // out of memory
    }
    return ORVPixelImageBuilder::NoteOutOfMemory();
}

}  // namespace

bool IsModuleImage(std::span<const std::uint8_t> bytes) {
    return Has(bytes, 0, "GIF8") || (Has(bytes, 0, "RIFF") && Has(bytes, 8, "WEBP"));
}

ORVPixelImage* ReadMemoryModuleImage(const void* bytes, std::size_t size) {
    if (!bytes || !IsModuleImage({static_cast<const std::uint8_t*>(bytes), size})) return nullptr;
    return ORVPixelImageBuilder::DecodeAndKeepSmaller(Decode, bytes, size);
}
