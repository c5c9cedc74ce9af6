// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/system/ORVBaseObject.h"

class ORVPixelImage;

/// Reads a GIF or WebP file from memory; only the first frame of an animation. Loads the required libraries
/// on first use. Never throws.
/// @return a new image with one reference; null when the bytes are not a valid and complete image of either
/// format, the pixel limit is exceeded, the libraries are missing, or memory is exhausted
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemoryModuleImage(const void* bytes, std::size_t size);

/// True for bytes with the signature of GIF or WebP.
ORV_PLATFORM_EXPORT bool IsModuleImage(std::span<const std::uint8_t> bytes);

// ---- the module ----

enum class ModuleImageStatus : std::uint8_t { kRead, kUnreadable, kOutOfMemory };

/// Provides the memory that the module writes pixels to.
class ModuleImagePixels {
public:
    virtual ~ModuleImagePixels() = default;
    /// Allocates width x height pixels of 4 bytes RGBA, initially transparent.
    /// @return the first byte; null when the size is not allowed
    virtual std::uint8_t* Reserve(std::uint64_t width, std::uint64_t height) = 0;
};

inline constexpr char kImageModule[] = "liborvimages.so";
inline constexpr char kImageReader[] = "orvReadImage";
/// Type of the function that the module exports.
using ModuleImageReader = ModuleImageStatus (*)(std::span<const std::uint8_t> file,
                                                ModuleImagePixels& pixels);
