// SPDX-License-Identifier: Apache-2.0
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
    /// How the components of a pixel are meant.
    enum class ColourSpace : std::uint8_t {
        kGrey,   ///< 1 component
        kYCbCr,  ///< 3 components
        kRGB,    ///< 3 components, stored without a transform
        kCMYK,   ///< 4 components, stored without a transform
        kYCCK,   ///< 4 components, CMY stored as YCbCr
    };
    std::span<const std::uint8_t> bytes;  ///< from SOI to EOI, without what followed; the image keeps them
    ColourSpace colourSpace = ColourSpace::kGrey;  ///< of the stored pixels
    int componentCount = 1;                        ///< of a stored pixel
    bool inverted = false;  ///< CMYK and YCCK: 255 means no ink (files with an Adobe marker)
    /// How the stored pixels lie, as Exif counts it: 1 as they are shown, up to 8.
    int orientation = 1;
    int storedWidth = 0;   ///< that of the file; the image's own is of what is shown
    int storedHeight = 0;  ///< the same
    /// Whether what lies in the file is shown upright, or the other way round.
    bool SwapsSides() const { return orientation > 4; }
};

/// What an image's file says of itself and is not followed. The pixels are then taken as they are.
enum class ORVImageRemark : std::uint8_t {
    kNone,
    kBrokenProfile,  ///< the colour profile is damaged, or is none of such pixels
    kNotConverted,   ///< the colours are not sRGB, but what converts them is not installed
    kOtherColours,   ///< the colours are described in a way that is not read
    kNotTurned,      ///< the pixels are to be turned, which is done with those of JPEG only
};

/// A pixel image. Pixels are 8 bit RGBA with straight alpha, rows from the top, without padding; their
/// colours are those of sRGB. What a file says of its own colours and of how it lies has been followed.
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
    /// spent, and not because of what it is. To be asked once after a failure: asking forgets it.
    static bool WasMemorySpent();

    /// Images of more than `pixels` are not read, wherever in the process; 2^28 when never set.
    static void SetPixelLimit(std::uint64_t pixels);
    /// The limit of pixels at this moment.
    static std::uint64_t GetPixelLimit();

    /// Pixels in a row.
    int GetWidth() const { return width_; }
    /// Rows.
    int GetHeight() const { return height_; }
    /// Bytes that the image was read from; 0 for one made of pixels.
    std::size_t GetFileSize() const { return fileSize_; }
    /// True when some pixel is not opaque.
    bool HasAlpha() const { return hasAlpha_; }
    /// Pixels per metre, 0 when the file does not say.
    double GetHorizontalResolution() const { return horizontalResolution_; }
    /// The same along columns.
    double GetVerticalResolution() const { return verticalResolution_; }

    /// All pixels, height x width x 4 bytes; valid as long as the image, or until ReleasePixels. Empty when
    /// out of memory.
    std::span<const std::uint8_t> GetPixels() const;
    /// Gives back the memory of pixels that can be decoded again: those of a JPEG, and large ones that were
    /// read from anywhere. Others stay.
    void ReleasePixels() const;
    /// The compressed file of an image read from JPEG, when its pixels are those of the image; null for any
    /// other image, also for one that was turned or had other colours.
    const ORVJpegSource* GetJpegSource() const {
        const ORVJpegSource* jpeg = GetTurnedJpegSource();
        return jpeg && jpeg->orientation == 1 ? jpeg : nullptr;
    }
    /// The same for those who turn it themselves, as its orientation says.
    const ORVJpegSource* GetTurnedJpegSource() const {
        return jpeg_.bytes.empty() || isConverted_ ? nullptr : &jpeg_;
    }

    /// What of the file is not followed; the first thing, if there are several.
    ORVImageRemark GetRemark() const { return remark_; }
    /// Bytes of the colour profile that was read.
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
    std::vector<std::uint8_t> file_;  // what pixels can be decoded from again, empty when they stay
    Decoder decoder_ = nullptr;       // for a file that is no JPEG
    ORVJpegSource jpeg_;
    bool isConverted_ = false;  // of a JPEG: its colours are not sRGB
    ORVImageRemark remark_ = ORVImageRemark::kNone;
    std::size_t profileSize_ = 0;
};

/// Reads a PNG in memory. Looks at no more than `size` bytes, accepts surplus bytes after the image, and
/// never throws. The integer has no effect.
/// @return a new image, or null when the bytes are no sound and complete image of the format, it is larger
///         than the pixel limit, or out of memory
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemoryPNGPixelImage(const void* bytes, std::size_t size,
                                                                         int);
/// The same for a JPEG.
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemoryJPEGPixelImage(const void* bytes, std::size_t size,
                                                                          int);
/// The same for a BMP.
[[nodiscard]] ORV_PLATFORM_EXPORT ORVPixelImage* ReadMemBMPPixelImage(const void* bytes, std::size_t size,
                                                                      int);
