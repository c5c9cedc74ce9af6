#include "generators/raster/picture_store.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "generators/common/path_range.h"

namespace {

// Samples that no thread uses are forgotten when all take more than this (bytes).
constexpr std::size_t kStoreLimit = std::size_t{96} << 20U;
// Pixels of a picture to one of the device, along a side, above which they are averaged.
constexpr double kDenseEnough = 4.0 / 3.0;

int ReducedSize(int size, double pixelsPerSample) {
    if (!(pixelsPerSample > kDenseEnough)) return size;
    return static_cast<int>(std::clamp(std::round(size / pixelsPerSample), 1.0, static_cast<double>(size)));
}

/// Averages areas, each sample of which stands for the same fraction of the image.
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
        float carried = 0.0F;  // part of the current column that is still to be given
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

PictureSamples::~PictureSamples() = default;

std::shared_ptr<const PictureSamples> PictureSamples::Make(const ORVPixelImage& image, int width,
                                                           int height) {
    const std::span<const std::uint8_t> rgba = image.GetPixels();
    if (rgba.empty()) return nullptr;
    try {
        const std::shared_ptr<PictureSamples> samples(new PictureSamples);
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
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void PictureSource::Read(int row, int begin, int end, std::uint8_t* rgba) const {
    const PictureSamples& from = *samples;
    const int width = from.GetWidth(), height = from.GetHeight();
    // A sample's value is that of its middle.
    const ORVMathPoint2D first = toSamples({begin + 0.5, row + 0.5});
    const auto place = [this](double at, int size, int& low, int& high) -> unsigned int {
        if (repeats) {
            at -= std::floor(at / size) * size;
            if (!(at >= 0.0 && at < size)) at = 0.0;
            low = static_cast<int>(at);
            high = low + 1 < size ? low + 1 : 0;
        } else {
            at = at > 0.0 ? std::min(at, size - 1.0) : 0.0;
            low = static_cast<int>(at);
            high = std::min(low + 1, size - 1);
        }
        return static_cast<unsigned int>((at - low) * 256.0);
    };
    for (int x = begin; x < end; ++x, rgba += 4) {
        const double steps = x - begin;
        int left = 0, right = 0, top = 0, bottom = 0;
        const unsigned int u = place(first.x + toSamples.m11 * steps - 0.5, width, left, right);
        const unsigned int v = place(first.y + toSamples.m21 * steps - 0.5, height, top, bottom);
        const std::uint8_t *a = from.GetPixel(left, top), *b = from.GetPixel(right, top);
        const std::uint8_t *c = from.GetPixel(left, bottom), *d = from.GetPixel(right, bottom);
        for (int i = 0; i < 4; ++i) {
            const unsigned int upper = a[i] * (256 - u) + b[i] * u, lower = c[i] * (256 - u) + d[i] * u;
            rgba[i] = static_cast<std::uint8_t>((upper * (256 - v) + lower * v + (1U << 15U)) >> 16U);
        }
    }
}

bool PictureStore::Find(const RasterPicture& picture, PictureSource& source) {
    const ORVPixelImage& image = *picture.image;
    ORVMathAffine2D toImage;
    if (!InvertMap(picture.toDevice, toImage)) return false;
    const int width = ReducedSize(image.GetWidth(), std::hypot(toImage.m11, toImage.m12));
    const int height = ReducedSize(image.GetHeight(), std::hypot(toImage.m21, toImage.m22));
    source.repeats = picture.repeats;
    source.toSamples = ORVMathAffine2D::Scaling(static_cast<double>(width) / image.GetWidth(),
                                                static_cast<double>(height) / image.GetHeight()) *
                       toImage;

    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const Entry& entry) {
        return entry.image.get() == &image && entry.width == width && entry.height == height;
    });
    if (found != entries_.end()) {
        entries_.splice(entries_.begin(), entries_, found);
        source.samples = entries_.front().samples;
        return true;
    }
    source.samples = PictureSamples::Make(image, width, height);
    if (!source.samples) return false;
    bytes_ += source.samples->GetBytes();
    entries_.push_front({picture.image, width, height, source.samples});
    // Averages need the image's own pixels no longer.
    const bool isCopy =
        source.samples->HasAlpha() || width != image.GetWidth() || height != image.GetHeight();
    const bool isShared = std::any_of(std::next(entries_.begin()), entries_.end(),
                                      [&](const Entry& entry) { return entry.image.get() == &image; });
    if (isCopy && !isShared) image.ReleasePixels();
    MakeRoom();
    return true;
}

void PictureStore::MakeRoom() {
    for (auto entry = entries_.end(); bytes_ > kStoreLimit && entry != entries_.begin();) {
        --entry;
        if (entry->samples.use_count() > 1) continue;
        bytes_ -= entry->samples->GetBytes();
        const ORVRef<const ORVPixelImage> image = entry->image;
        entry = entries_.erase(entry);
        const bool isShared = std::any_of(entries_.begin(), entries_.end(), [&](const Entry& other) {
            return other.image.get() == image.get();
        });
        if (!isShared) image->ReleasePixels();
    }
}

void PictureStore::Clear() {
    const std::lock_guard lock(mutex_);
    for (Entry& entry : entries_) {
        entry.samples.reset();
        entry.image->ReleasePixels();
    }
    entries_.clear();
    bytes_ = 0;
}
