// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/visualization/images/ORVPixelImage.h"

/// The premultiplied pixels of an image, resampled to about the size at which it is drawn.
class ImageSamples {
public:
    /// Resamples an image. Images drawn smaller than they are get averages of areas. Throws std::bad_alloc
    /// when out of memory.
    static std::shared_ptr<const ImageSamples> Make(const ORVPixelImage& image, int width, int height);

    ~ImageSamples();
    ImageSamples(const ImageSamples&) = delete;
    ImageSamples& operator=(const ImageSamples&) = delete;

    int GetWidth() const { return width_; }
    int GetHeight() const { return height_; }
    bool HasAlpha() const { return hasAlpha_; }
    std::size_t GetBytes() const { return bytes_; }
    const std::uint8_t* GetPixel(int x, int y) const {
        return pixels_ + (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
                          static_cast<std::size_t>(x)) *
                             4;
    }

private:
    ImageSamples() = default;

    int width_ = 0, height_ = 0;
    bool hasAlpha_ = false;
    std::size_t bytes_ = 0;
    const std::uint8_t* pixels_ = nullptr;
    std::vector<std::uint8_t> own_;
};
