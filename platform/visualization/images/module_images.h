// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/system/ORVBaseObject.h"

class ORVPixelImage;

/// Reads a GIF or WebP file in memory: of an animation its first frame. The libraries for it are loaded with
/// the first one. Never throws.
/// @return a new image with one reference, or null when the bytes are neither, or not sound and complete, the
///         image is larger than the pixel limit, the libraries are missing, or out of memory
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemoryModuleImage(const void* bytes, std::size_t size);

/// True for bytes that begin as a GIF or WebP file does.
ORV_PLATFORM_EXPORT bool IsModuleImage(std::span<const std::uint8_t> bytes);

// ---- the module ----

enum class ModuleImageStatus : std::uint8_t { kRead, kUnreadable, kMemorySpent };

/// Where the module puts pixels.
class ModuleImagePixels {
public:
    virtual ~ModuleImagePixels() = default;
    /// Reserves width x height pixels of 4 bytes RGBA, all of them transparent.
    /// @return the first byte, or null when the size is not allowed
    virtual std::uint8_t* Reserve(std::uint64_t width, std::uint64_t height) = 0;
};

inline constexpr char kImageModule[] = "liborvimages.so";
inline constexpr char kImageReader[] = "orvReadImage";
/// What the module exports under that name.
using ModuleImageReader = ModuleImageStatus (*)(std::span<const std::uint8_t> file,
                                                ModuleImagePixels& pixels);
