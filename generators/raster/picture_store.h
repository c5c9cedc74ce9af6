#pragma once

#include <cstddef>
#include <cstdint>
#include <list>
#include <memory>
#include <mutex>
#include <span>
#include <unordered_map>
#include <vector>

#include "generators/raster/display_list.h"

/// A picture's pixels at about the size at which they are drawn, premultiplied, with what it takes to draw
/// them.
class PictureSamples {
public:
    /// Makes samples of a picture. Those that are drawn smaller than they are become averages of areas.
    /// Throws std::bad_alloc when memory is spent.
    static std::shared_ptr<const PictureSamples> Make(const ORVPixelImage& image, int width, int height);

    ~PictureSamples();
    PictureSamples(const PictureSamples&) = delete;
    PictureSamples& operator=(const PictureSamples&) = delete;

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
    PictureSamples() = default;

    int width_ = 0, height_ = 0;
    bool hasAlpha_ = false;
    std::size_t bytes_ = 0;
    const std::uint8_t* pixels_ = nullptr;
    std::vector<std::uint8_t> own_;
};

/// A picture made ready for drawing.
struct PictureSource {
    std::shared_ptr<const PictureSamples> samples;
    ORVMathAffine2D toSamples;  // from the device
    bool repeats = false;

    /// Writes the premultiplied colours (RGBA) of the pixels [begin, end) of a row.
    void Read(int row, int begin, int end, std::uint8_t* rgba) const;
};

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
