// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "platform/print/ORVPrintGenerator.h"

/// A rectangle of whole pixels of a page, [left, right) and [top, bottom); empty if the limits are reversed.
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
    /// Must not be called for empty bounds.
    std::uint64_t CountPixels() const {
        return static_cast<std::uint64_t>(right - left) * static_cast<std::uint64_t>(bottom - top);
    }
    bool Holds(const RasterBounds& other) const {
        return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
    }
};

/// A layer, or the mask of a layer: painted separately and then composited.
struct RasterLayer {
    std::uint32_t outer = 0;  ///< index of the layer around it, or of the masked layer; 0 is the page
    RasterBounds bounds;      ///< pixels it covers
    std::uint8_t opacity = 255;
    ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal;
    bool isIsolated = true;
    bool hasMask = false;
    bool isPlain = false;  ///< looks the same as if its content were painted directly
    ORVPrintMask::Kind maskKind = ORVPrintMask::Kind::kLuminance;  ///< for a mask

    // Sizes of the memory for a row.
    static constexpr std::size_t kPixelBytes = 4, kRowPadding = 24;
    static std::size_t PixelStride(int width) {
        return (static_cast<std::size_t>(width) + kRowPadding) * kPixelBytes;
    }
    static std::size_t MaskStride(int width) { return static_cast<std::size_t>(width) + kRowPadding; }
    /// Bytes for a row, including the flag that it was drawn on.
    std::size_t GetRowBytes() const {
        if (isPlain) return 0;
        const int width = bounds.right - bounds.left;
        return PixelStride(width) + 1 + (hasMask ? MaskStride(width) : 0);
    }
};
