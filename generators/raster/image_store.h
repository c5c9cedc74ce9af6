// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "generators/raster/image_sampler.h"
#include "generators/raster/raster_operation.h"

/// Resampled images of a page, made on first use. Thread-safe.
class ImageStore {
public:
    /// @return false if the image cannot be loaded
    bool Find(const PlacedImage& placed, ImageSampler& source);
    /// Removes all entries and lets images release their memory.
    void Clear();

private:
    struct Entry {
        ORVRef<const ORVPixelImage> image;
        int width = 0, height = 0;
        std::shared_ptr<const ImageSamples> samples;
    };
    using Entries = std::list<Entry>;
    /// Removes an entry. @return true if it was the last one of its image
    bool Forget(Entries::iterator entry);
    void MakeRoom();

    std::mutex mutex_;
    Entries entries_;  // most recently used first
    // Entries of each image. There may be very many images, each in few sizes.
    std::unordered_map<const ORVPixelImage*, std::vector<Entries::iterator>> byImage_;
    std::size_t bytes_ = 0;
};
