// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/image_samples.h"

#include <algorithm>
#include <new>
#include <span>

namespace {

/// Reduces an image by averaging; each sample represents an equal fraction of the image.
class Reduction {
public:
    Reduction(int width, int height, int toWidth, int toHeight)
        : width_(width),
          height_(height),
          toWidth_(toWidth),
          toHeight_(toHeight),
          sums_(static_cast<std::size_t>(toWidth) * 4),
          line_(static_cast<std::size_t>(toWidth) * 4) {}

    void Run(const std::uint8_t* from, bool hasAlpha, std::uint8_t* to) {
        const double rowsPerSample = static_cast<double>(height_) / toHeight_;
        const float area = static_cast<float>(1.0 / (rowsPerSample * width_ / toWidth_));
        int row = 0;
        for (int y = 0; y < toHeight_; ++y) {
            const double top = y * rowsPerSample, bottom = std::min((y + 1) * rowsPerSample, 1.0 * height_);
            std::fill(sums_.begin(), sums_.end(), 0.0F);
            for (row = static_cast<int>(top); row < height_ && row < bottom; ++row) {
                const double share = std::min(bottom, row + 1.0) - std::max(top, 1.0 * row);
                if (!(share > 0.0)) continue;
                AddRow(from + static_cast<std::size_t>(row) * static_cast<std::size_t>(width_) * 4, hasAlpha);
                for (std::size_t i = 0; i < sums_.size(); ++i)
                    sums_[i] += line_[i] * static_cast<float>(share);
            }
            for (const float sum : sums_)
                *to++ = static_cast<std::uint8_t>(std::clamp(sum * area + 0.5F, 0.0F, 255.0F));
        }
    }

private:
    void AddRow(const std::uint8_t* pixel, bool hasAlpha) {
        const double columnsPerSample = static_cast<double>(width_) / toWidth_;
        float* out = line_.data();
        int column = 0;
        float carried = 0.0F;  // remaining part of the current column
        float current[4] = {};
        const auto load = [&] {
            const auto alpha = static_cast<float>(pixel[3]);
            const float factor = hasAlpha ? alpha / 255.0F : 1.0F;
            for (int i = 0; i < 3; ++i) current[i] = static_cast<float>(pixel[i]) * factor;
            current[3] = alpha;
            pixel += 4;
            carried = 1.0F;
            ++column;
        };
        for (int x = 0; x < toWidth_; ++x, out += 4) {
            auto wanted = static_cast<float>(columnsPerSample);
            std::fill(out, out + 4, 0.0F);
            while (wanted > 1e-4F) {
                if (carried <= 0.0F) {
                    if (column >= width_) break;
                    load();
                }
                const float share = std::min(wanted, carried);
                for (int i = 0; i < 4; ++i) out[i] += current[i] * share;
                wanted -= share;
                carried -= share;
            }
        }
    }

    const int width_, height_, toWidth_, toHeight_;
    std::vector<float> sums_, line_;
};

}  // namespace

ImageSamples::~ImageSamples() = default;

std::shared_ptr<const ImageSamples> ImageSamples::Make(const ORVPixelImage& image, int width, int height) {
    const std::span<const std::uint8_t> rgba = image.GetPixels();
    if (rgba.empty()) throw std::bad_alloc();
    const std::shared_ptr<ImageSamples> samples(new ImageSamples);
    samples->width_ = width;
    samples->height_ = height;
    samples->hasAlpha_ = image.HasAlpha();
    samples->bytes_ = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
    const bool reduces = width != image.GetWidth() || height != image.GetHeight();
    if (!reduces && !image.HasAlpha()) {
        samples->pixels_ = rgba.data();
        return samples;
    }
    samples->own_.resize(samples->bytes_);
    samples->pixels_ = samples->own_.data();
    if (reduces) {
        Reduction(image.GetWidth(), image.GetHeight(), width, height)
            .Run(rgba.data(), image.HasAlpha(), samples->own_.data());
    } else {
        for (std::size_t i = 0; i < samples->bytes_; i += 4) {
            const unsigned int alpha = rgba[i + 3];
            for (std::size_t k = 0; k < 3; ++k)
                samples->own_[i + k] = static_cast<std::uint8_t>((rgba[i + k] * alpha + 127) / 255);
            samples->own_[i + 3] = rgba[i + 3];
        }
    }
    return samples;
}
