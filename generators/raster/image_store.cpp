// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/image_store.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "generators/common/path_range.h"

namespace {

// Total size in bytes beyond which samples that no thread uses are removed.
constexpr std::size_t kStoreLimit = std::size_t{96} << 20U;
// Samples kept per device pixel along each axis, for images drawn smaller than they are.
constexpr double kKeptSamples = 2.0;

int ReducedSize(int size, double pixelsPerDevicePixel) {
    if (!(pixelsPerDevicePixel > kKeptSamples)) return size;
    return static_cast<int>(
        std::clamp(std::round(size / pixelsPerDevicePixel * kKeptSamples), 1.0, static_cast<double>(size)));
}

}  // namespace

bool ImageStore::Find(const PlacedImage& placed, ImageSampler& source) {
    const ORVPixelImage& image = *placed.image;
    const std::optional<ORVMathAffine2D> inverse = placed.toDevice.Inverse();
    if (!inverse) return false;
    const ORVMathAffine2D& toImage = *inverse;
    const auto sizeFor = [&placed](int size, double pixelsPerDevicePixel) {
        return placed.isSmooth ? ReducedSize(size, pixelsPerDevicePixel) : size;
    };
    const int width = sizeFor(image.GetWidth(), std::hypot(toImage.m11, toImage.m12));
    const int height = sizeFor(image.GetHeight(), std::hypot(toImage.m21, toImage.m22));
    source.repeats = placed.repeats;
    source.isSmooth = placed.isSmooth;
    source.made = 0;
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
    source.samples = ImageSamples::Make(image, width, height);
    source.made =
        static_cast<std::uint64_t>(image.GetWidth()) * static_cast<std::uint64_t>(image.GetHeight());
    entries_.push_front({placed.image, width, height, source.samples});
    ofImage.push_back(entries_.begin());
    bytes_ += source.samples->GetBytes();
    // Averages do not refer to the image's own pixels any more.
    const bool isCopy =
        source.samples->HasAlpha() || width != image.GetWidth() || height != image.GetHeight();
    if (isCopy && ofImage.size() == 1) image.ReleasePixels();
    MakeRoom();
    return true;
}

bool ImageStore::Forget(Entries::iterator entry) {
    const auto ofImage = byImage_.find(entry->image.get());
    std::erase(ofImage->second, entry);
    const bool isLast = ofImage->second.empty();
    if (isLast) byImage_.erase(ofImage);
    bytes_ -= entry->samples->GetBytes();
    entries_.erase(entry);
    return isLast;
}

void ImageStore::MakeRoom() {
    for (auto entry = entries_.end(); bytes_ > kStoreLimit && entry != entries_.begin();) {
        --entry;
        if (entry->samples.use_count() > 1) continue;
        const ORVRef<const ORVPixelImage> image = entry->image;
        if (Forget(entry++)) image->ReleasePixels();
    }
}

void ImageStore::Clear() {
    const std::lock_guard lock(mutex_);
    for (Entry& entry : entries_) {
        entry.samples.reset();
        entry.image->ReleasePixels();
    }
    entries_.clear();
    byImage_.clear();
    bytes_ = 0;
}
