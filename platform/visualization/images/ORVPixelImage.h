#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVString.h"

/// What a JPEG file holds, for generators whose format takes JPEG data as they are.
struct ORVJpegSource {
    enum class ColourSpace : std::uint8_t {
        kGrey,   ///< 1 component
        kYCbCr,  ///< 3 components
        kRGB,    ///< 3 components, stored without a transform
        kCMYK,   ///< 4 components, stored without a transform
        kYCCK,   ///< 4 components, CMY stored as YCbCr
    };
    std::span<const std::uint8_t> bytes;  ///< from SOI to EOI, without what followed; the image keeps them
    ColourSpace colourSpace = ColourSpace::kGrey;
    int componentCount = 1;
    bool inverted = false;  ///< CMYK and YCCK: 255 means no ink (files with an Adobe marker)
};

/// A pixel image. Pixels are 8 bit RGBA with straight alpha, rows from the top, without padding.
/// Reference counted: a new object has one reference, which its creator releases. An image never changes;
/// pixels that are still compressed are decoded when they are first asked for, so that asking belongs to
/// one thread at a time like the object itself.
class ORV_PLATFORM_EXPORT ORVPixelImage final : public ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// Reads a PNG, JPEG or BMP file; its content decides which. Asks no access policy: the caller has.
    /// @param colours, flags  of no effect
    /// @return a new image, or null when there is no such file, or it is none of the three or not sound
    [[nodiscard]] static ORVPixelImage* CreateFromFile(const ORVString& path, int colours, int flags);
    /// Makes an image of width x height x 4 bytes.
    /// @return null when the sizes do not fit each other or the pixel limit
    [[nodiscard]] static ORVPixelImage* CreateFromPixels(int width, int height,
                                                         std::span<const std::uint8_t> rgba);

    /// True when the last image that this thread tried to make or to read came to nothing because memory was
    /// spent, and not because of what it is.
    static bool WasMemorySpent();

    /// Images of more than `pixels` are not read, wherever in the process; 2^28 when never set.
    static void SetPixelLimit(std::uint64_t pixels);
    static std::uint64_t GetPixelLimit();

    int GetWidth() const { return width_; }
    int GetHeight() const { return height_; }
    /// Bytes that the image was read from; 0 for one made of pixels.
    std::size_t GetFileSize() const { return fileSize_; }
    /// True when some pixel is not opaque.
    bool HasAlpha() const { return hasAlpha_; }
    /// Pixels per metre, 0 when the file does not say.
    double GetHorizontalResolution() const { return horizontalResolution_; }
    double GetVerticalResolution() const { return verticalResolution_; }

    /// All pixels, height x width x 4 bytes; valid as long as the image, or until ReleasePixels. Empty when
    /// memory is spent.
    std::span<const std::uint8_t> GetPixels() const;
    /// Gives back the memory of pixels that can be decoded again: those of a JPEG, and large ones that were
    /// read from anywhere. Others stay.
    void ReleasePixels() const;
    /// The compressed file of an image read from JPEG, null for any other image.
    const ORVJpegSource* GetJpegSource() const { return jpeg_.bytes.empty() ? nullptr : &jpeg_; }

private:
    friend class ORVPixelImageBuilder;
    struct Free {
        void operator()(std::uint8_t* memory) const;
    };
    using Pixels = std::unique_ptr<std::uint8_t, Free>;
    using Decoder = ORVPixelImage* (*)(const void* bytes, std::size_t size);

    ORVPixelImage() = default;
    ~ORVPixelImage() override = default;

    int width_ = 0, height_ = 0;
    std::size_t fileSize_ = 0;
    bool hasAlpha_ = false;
    double horizontalResolution_ = 0.0, verticalResolution_ = 0.0;
    mutable Pixels pixels_;
    std::vector<std::uint8_t> file_;  // what pixels can be decoded from again, empty when they stay
    Decoder decoder_ = nullptr;       // for a file that is no JPEG
    ORVJpegSource jpeg_;
};

/// Readers of images in memory. They look at no more than `size` bytes, accept surplus bytes after the image,
/// and never throw. The integer has no effect.
/// @return a new image, or null when the bytes are no sound and complete image of the format, it is larger
///         than the pixel limit, or memory is spent
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemoryPNGPixelImage(const void* bytes, std::size_t size,
                                                                         int);
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemoryJPEGPixelImage(const void* bytes, std::size_t size,
                                                                          int);
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemBMPPixelImage(const void* bytes, std::size_t size,
                                                                      int);
