// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVString.h"

/// The contents of a JPEG file, for output formats that can embed JPEG data.
struct ORVJpegSource {
    /// Meaning of the components of a pixel.
    enum class ColourSpace : std::uint8_t {
        kGrey,   ///< 1 component
        kYCbCr,  ///< 3 components
        kRGB,    ///< 3 components, stored without a transform
        kCMYK,   ///< 4 components, stored without a transform
        kYCCK,   ///< 4 components, CMY stored as YCbCr
    };
    std::span<const std::uint8_t> bytes;  ///< from SOI to EOI, without trailing data; owned by the image
    ColourSpace colourSpace = ColourSpace::kGrey;  ///< of the stored pixels
    int componentCount = 1;                        ///< components of a stored pixel
    bool inverted = false;  ///< for CMYK and YCCK: 255 means no ink (files with an Adobe marker)
    /// Exif orientation of the stored pixels: 1 (upright) to 8.
    int orientation = 1;
    int storedWidth = 0;   ///< size in the file; the image's own size is after rotation
    int storedHeight = 0;  ///< as `storedWidth`
    /// Whether the orientation exchanges width and height.
    bool SwapsSides() const { return orientation > 4; }
};

/// A property of an image file that was ignored. The pixels are then used as stored.
enum class ORVImageRemark : std::uint8_t {
    kNone,
    kBrokenProfile,  ///< the colour profile is damaged or does not match the pixel format
    kNotConverted,   ///< the colours are not sRGB, but the module that converts them is not installed
    kOtherColours,   ///< the colour description is in an unsupported form
    kNotTurned,      ///< the orientation is supported for JPEG only
};

/// A raster image. Pixels are 8-bit RGBA, not premultiplied, in sRGB, in rows from the top without padding;
/// the colour profile and orientation of the file have been applied. Reference counted: a new object has one
/// reference, owned by its creator. An image never changes, but compressed pixels are decoded on first
/// access, so that an image must be used by one thread at a time.
class ORV_PLATFORM_EXPORT ORVPixelImage final : public ORVBaseObject {
public:
    static const ORVMetaClass& MetaClass();
    const ORVMetaClass& GetMetaClass() const override { return MetaClass(); }

    /// Reads a PNG, JPEG or BMP file, as detected from its content. Does not check the access policy; the
    /// caller must.
    /// @param colours, flags  ignored
    /// @return a new image; null when the file does not exist, is in another format, or is invalid
    [[nodiscard]] static ORVPixelImage* CreateFromFile(const ORVString& path, int colours, int flags);
    /// Creates an image from width x height x 4 bytes.
    /// @return null when the number of bytes does not match or the pixel limit is exceeded
    [[nodiscard]] static ORVPixelImage* CreateFromPixels(int width, int height,
                                                         std::span<const std::uint8_t> rgba);

    /// True when the last attempt of this thread to create or read an image failed for lack of memory, not
    /// because of its content. Resets the state, so it must be queried once after a failure.
    static bool RanOutOfMemory();

    /// Sets the largest number of pixels of an image, for the whole process. Default: 2^28.
    static void SetPixelLimit(std::uint64_t pixels);
    /// The current pixel limit.
    static std::uint64_t GetPixelLimit();

    /// Width in pixels.
    int GetWidth() const { return width_; }
    /// Height in pixels.
    int GetHeight() const { return height_; }
    /// Size of the file in bytes; 0 for an image created from pixels.
    std::size_t GetFileSize() const { return fileSize_; }
    /// True when some pixel is not opaque.
    bool HasAlpha() const { return hasAlpha_; }
    /// Horizontal pixels per metre; 0 when the file does not specify it.
    double GetHorizontalResolution() const { return horizontalResolution_; }
    /// Vertical pixels per metre; 0 when the file does not specify it.
    double GetVerticalResolution() const { return verticalResolution_; }

    /// All pixels, height x width x 4 bytes. Valid until ReleasePixels or the end of the image. Empty when
    /// out of memory.
    std::span<const std::uint8_t> GetPixels() const;
    /// Frees the pixels if they can be decoded again: those of a JPEG, and those of large images read from
    /// any format. Others are kept.
    void ReleasePixels() const;
    /// The JPEG file, if its stored pixels are those of the image; null for other formats, and for a JPEG
    /// that was rotated or converted to sRGB.
    const ORVJpegSource* GetJpegSource() const {
        const ORVJpegSource* jpeg = GetTurnedJpegSource();
        return jpeg && jpeg->orientation == 1 ? jpeg : nullptr;
    }
    /// Like GetJpegSource, but also returned for a rotated JPEG; the caller must apply the orientation.
    const ORVJpegSource* GetTurnedJpegSource() const {
        return jpeg_.bytes.empty() || isConverted_ ? nullptr : &jpeg_;
    }

    /// The first property of the file that was ignored.
    ORVImageRemark GetRemark() const { return remark_; }
    /// Size of the colour profile in bytes.
    std::size_t GetProfileSize() const { return profileSize_; }

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
    std::vector<std::uint8_t> file_;  // encoded file to decode pixels from again; empty when they are kept
    Decoder decoder_ = nullptr;       // for files other than JPEG
    ORVJpegSource jpeg_;
    bool isConverted_ = false;  // a JPEG whose colours were converted to sRGB
    ORVImageRemark remark_ = ORVImageRemark::kNone;
    std::size_t profileSize_ = 0;
};

/// Reads a PNG from memory. Reads at most `size` bytes, ignores trailing bytes, and never throws. The integer
/// is ignored.
/// @return a new image; null when the bytes are not a valid and complete image of the format, the pixel limit
/// is exceeded, or memory is exhausted
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemoryPNGPixelImage(const void* bytes, std::size_t size,
                                                                         int);
/// Like ReadMemoryPNGPixelImage, for a JPEG.
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemoryJPEGPixelImage(const void* bytes, std::size_t size,
                                                                          int);
/// Like ReadMemoryPNGPixelImage, for a BMP.
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemBMPPixelImage(const void* bytes, std::size_t size,
                                                                      int);
