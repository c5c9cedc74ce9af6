// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/visualization/images/ORVPixelImage.h"

/// The readers' way to make an image: sizes, then pixels row by row, then Finish. Its pixels start as
/// transparent black, and memory is only touched where pixels are written, so that a header alone costs
/// nothing.
class ORVPixelImageBuilder {
public:
    ORVPixelImageBuilder() = default;
    ORVPixelImageBuilder(const ORVPixelImageBuilder&) = delete;
    ORVPixelImageBuilder& operator=(const ORVPixelImageBuilder&) = delete;

    /// True when an image of this size may exist: neither side is 0 and the pixel limit holds.
    static bool IsAllowed(std::uint64_t width, std::uint64_t height);

    /// For ORVPixelImage::WasMemorySpent: a new reading begins; it failed because memory ran out.
    /// @return null
    static void BeginReading();
    static ORVPixelImage* NoteMemorySpent();

    /// Reserves the pixels. @return false when the size is not allowed, or when out of memory
    bool SetSize(std::uint64_t width, std::uint64_t height);
    /// First byte of a row; row < height.
    std::uint8_t* GetRow(std::size_t row) const { return pixels_.get() + row * rowBytes_; }
    std::size_t GetPixelCount() const { return width_ * height_; }
    void SetResolution(double horizontal, double vertical);
    /// Looks through a finished row for pixels that are not opaque.
    void NoteAlpha(std::size_t row);
    void SetAlpha() { hasAlpha_ = true; }
    void SetRemark(ORVImageRemark remark) { remark_ = remark; }
    void SetProfileSize(std::size_t bytes) { profileSize_ = bytes; }

    /// The image with its pixels, one reference for the caller. Null when out of memory.
    ORVPixelImage* Finish();
    /// An image whose pixels stay compressed; the stored size is allowed. `source.bytes` is of no account.
    /// @param isConverted  its colours are not sRGB
    ORVPixelImage* FinishJpeg(std::vector<std::uint8_t> file, const ORVJpegSource& source, bool isConverted);

    using Decoder = ORVPixelImage* (*)(const void* bytes, std::size_t size);
    /// Decodes an image. Of a large one only the file is kept, so that a document with many of them needs the
    /// memory of one at a time.
    /// @param decoder  gives the image with its pixels, or null
    static ORVPixelImage* DecodeAndKeepSmaller(Decoder decoder, const void* bytes, std::size_t size);

private:
    std::size_t width_ = 0, height_ = 0, rowBytes_ = 0;
    double horizontalResolution_ = 0.0, verticalResolution_ = 0.0;
    bool hasAlpha_ = false;
    ORVImageRemark remark_ = ORVImageRemark::kNone;
    std::size_t profileSize_ = 0;
    ORVPixelImage::Pixels pixels_;
};

/// Decodes a JPEG that has been checked when it was read, turned and in the colours of sRGB.
/// @param isConverted  its own colours are others
/// @param rgba         as many pixels as are stored, 4 bytes each @return false when out of memory
bool DecodeJpegPixels(const ORVJpegSource& source, bool isConverted, std::uint8_t* rgba);
