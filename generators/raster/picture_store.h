// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

#include "generators/raster/picture_source.h"
#include "generators/raster/raster_operation.h"

/// The samples of a page's pictures, made when they are first needed. May be used by several threads.
class PictureStore {
public:
    /// @return false when the picture cannot be had
    bool Find(const RasterPicture& picture, PictureSource& source);
    /// Forgets everything, and lets images give back their memory.
    void Clear();

private:
    struct Entry {
        ORVRef<const ORVPixelImage> image;
        int width = 0, height = 0;
        std::shared_ptr<const PictureSamples> samples;
    };
    using Entries = std::list<Entry>;
    /// Forgets an entry. @return true when it was the last one of its image
    bool Forget(Entries::iterator entry);
    void MakeRoom();

    std::mutex mutex_;
    Entries entries_;  // the one used last comes first
    // Those of an image: there may be very many images, of few sizes each.
    std::unordered_map<const ORVPixelImage*, std::vector<Entries::iterator>> byImage_;
    std::size_t bytes_ = 0;
};
