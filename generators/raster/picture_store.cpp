#include "generators/raster/picture_store.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "generators/common/path_range.h"

namespace {

// Samples that no thread uses are forgotten when all take more than this (bytes).
constexpr std::size_t kStoreLimit = std::size_t{96} << 20U;
// Of pictures that are drawn smaller than they are, so many samples are kept for a pixel of the device, along
// a side; and so many are then read for it, so that it gets the average of just its own area.
constexpr double kKeptSamples = 2.0;
constexpr int kReadSamples = 3;

int ReducedSize(int size, double pixelsPerDevicePixel) {
    if (!(pixelsPerDevicePixel > kKeptSamples)) return size;
    return static_cast<int>(
        std::clamp(std::round(size / pixelsPerDevicePixel * kKeptSamples), 1.0, static_cast<double>(size)));
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
    if (rgba.empty()) throw std::bad_alloc();
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
}

namespace {

/// Where a coordinate lies between two samples, and how far from the first of them (256 from one to the
/// next).
struct Place {
    int low = 0, high = 0;
    unsigned int share = 0;
};

Place PlaceOf(double at, int size, bool repeats) {
    Place place;
    if (repeats) {
        at -= std::floor(at / size) * size;
        if (!(at >= 0.0 && at < size)) at = 0.0;
        place.low = static_cast<int>(at);
        place.high = place.low + 1 < size ? place.low + 1 : 0;
    } else {
        at = at > 0.0 ? std::min(at, size - 1.0) : 0.0;
        place.low = static_cast<int>(at);
        place.high = std::min(place.low + 1, size - 1);
    }
    place.share = static_cast<unsigned int>((at - place.low) * 256.0);
    return place;
}

/// The colour at a place, times 2^16.
void AddSample(const PictureSamples& from, const Place& x, const Place& y, unsigned int (&sums)[4]) {
    const std::uint8_t *a = from.GetPixel(x.low, y.low), *b = from.GetPixel(x.high, y.low);
    const std::uint8_t *c = from.GetPixel(x.low, y.high), *d = from.GetPixel(x.high, y.high);
    for (int i = 0; i < 4; ++i) {
        const unsigned int upper = a[i] * (256 - x.share) + b[i] * x.share;
        const unsigned int lower = c[i] * (256 - x.share) + d[i] * x.share;
        sums[i] += upper * (256 - y.share) + lower * y.share;
    }
}

}  // namespace

void PictureSource::Read(int row, int begin, int end, std::uint8_t* rgba) const {
    const int width = samples->GetWidth(), height = samples->GetHeight();
    const auto readsOf = [](double a, double b) { return std::hypot(a, b) > 1.02 ? kReadSamples : 1; };
    const int across = std::max(readsOf(toSamples.m11, toSamples.m21), 1);
    const int down = std::max(readsOf(toSamples.m12, toSamples.m22), 1);
    const auto count = static_cast<unsigned int>(across * down);
    for (int x = begin; x < end; ++x, rgba += 4) {
        unsigned int sums[4] = {};
        for (int j = 0; j < down; ++j)
            for (int i = 0; i < across; ++i) {
                // A sample's value is that of its middle.
                const ORVMathPoint2D p = toSamples({x + (i + 0.5) / across, row + (j + 0.5) / down});
                AddSample(*samples, PlaceOf(p.x - 0.5, width, repeats), PlaceOf(p.y - 0.5, height, repeats),
                          sums);
            }
        for (int i = 0; i < 4; ++i)
            rgba[i] = static_cast<std::uint8_t>((sums[i] / count + (1U << 15U)) >> 16U);
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
    std::vector<Entries::iterator>& ofImage = byImage_[&image];
    for (const Entries::iterator entry : ofImage)
        if (entry->width == width && entry->height == height) {
            entries_.splice(entries_.begin(), entries_, entry);
            source.samples = entry->samples;
            return true;
        }
    ofImage.reserve(ofImage.size() + 1);
    source.samples = PictureSamples::Make(image, width, height);
    entries_.push_front({picture.image, width, height, source.samples});
    ofImage.push_back(entries_.begin());
    bytes_ += source.samples->GetBytes();
    // Averages need the image's own pixels no longer.
    const bool isCopy =
        source.samples->HasAlpha() || width != image.GetWidth() || height != image.GetHeight();
    if (isCopy && ofImage.size() == 1) image.ReleasePixels();
    MakeRoom();
    return true;
}

bool PictureStore::Forget(Entries::iterator entry) {
    const auto ofImage = byImage_.find(entry->image.get());
    std::erase(ofImage->second, entry);
    const bool isLast = ofImage->second.empty();
    if (isLast) byImage_.erase(ofImage);
    bytes_ -= entry->samples->GetBytes();
    entries_.erase(entry);
    return isLast;
}

void PictureStore::MakeRoom() {
    for (auto entry = entries_.end(); bytes_ > kStoreLimit && entry != entries_.begin();) {
        --entry;
        if (entry->samples.use_count() > 1) continue;
        const ORVRef<const ORVPixelImage> image = entry->image;
        if (Forget(entry++)) image->ReleasePixels();
    }
}

void PictureStore::Clear() {
    const std::lock_guard lock(mutex_);
    for (Entry& entry : entries_) {
        entry.samples.reset();
        entry.image->ReleasePixels();
    }
    entries_.clear();
    byImage_.clear();
    bytes_ = 0;
}
