// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/print/ORVPrintGenerator.h"

/// Whole pixels of a page, [left, right) and [top, bottom); empty where they are the wrong way round.
struct RasterBounds {
    int left = 0, top = 0, right = 0, bottom = 0;

    bool IsEmpty() const { return left >= right || top >= bottom; }
    RasterBounds CutTo(const RasterBounds& other) const {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
    void Add(const RasterBounds& other) {
        if (other.IsEmpty()) return;
        if (IsEmpty()) {
            *this = other;
            return;
        }
        *this = {std::min(left, other.left), std::min(top, other.top), std::max(right, other.right),
                 std::max(bottom, other.bottom)};
    }
    /// Of bounds that are not empty.
    std::uint64_t CountPixels() const {
        return static_cast<std::uint64_t>(right - left) * static_cast<std::uint64_t>(bottom - top);
    }
    bool Holds(const RasterBounds& other) const {
        return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
    }
};

/// What is painted apart and then laid over something: a layer, or a layer's mask.
struct RasterLayer {
    std::uint32_t outer = 0;  ///< number of the layer that it lies in, or is the mask of; 0 is the page
    RasterBounds bounds;      ///< pixels that it has
    std::uint8_t opacity = 255;
    ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal;
    bool isIsolated = true;
    bool hasMask = false;
    bool isPlain = false;  ///< looks as though its content were painted directly
    ORVPrintMask::Kind maskKind = ORVPrintMask::Kind::kLuminance;  ///< of a mask

    // Of the memory that a row takes.
    static constexpr std::size_t kPixelBytes = 4, kRowPadding = 24;
    static std::size_t PixelStride(int width) {
        return (static_cast<std::size_t>(width) + kRowPadding) * kPixelBytes;
    }
    static std::size_t MaskStride(int width) { return static_cast<std::size_t>(width) + kRowPadding; }
    /// Bytes of a row, with what notes that it was drawn on.
    std::size_t GetRowBytes() const {
        if (isPlain) return 0;
        const int width = bounds.right - bounds.left;
        return PixelStride(width) + 1 + (hasMask ? MaskStride(width) : 0);
    }
};
