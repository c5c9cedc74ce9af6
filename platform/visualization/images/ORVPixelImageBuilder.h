// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/visualization/images/ORVPixelImage.h"

/// Creates an image in a reader: SetSize, then pixels row by row, then Finish. Pixels are initially
/// transparent black. Memory pages are touched only when pixels are written, so a mere header costs nothing.
class ORVPixelImageBuilder {
public:
    ORVPixelImageBuilder() = default;
    ORVPixelImageBuilder(const ORVPixelImageBuilder&) = delete;
    ORVPixelImageBuilder& operator=(const ORVPixelImageBuilder&) = delete;

    /// True when neither side is 0 and the pixel limit is respected.
    static bool IsAllowed(std::uint64_t width, std::uint64_t height);

    /// For ORVPixelImage::RanOutOfMemory: BeginReading resets its state, NoteOutOfMemory sets it and returns
    /// null.
    static void BeginReading();
    static ORVPixelImage* NoteOutOfMemory();

    /// Allocates the pixels. @return false when the size is not allowed or memory is exhausted
    bool SetSize(std::uint64_t width, std::uint64_t height);
    /// First byte of a row. @param row  less than the height
    std::uint8_t* GetRow(std::size_t row) const { return pixels_.get() + row * rowBytes_; }
    std::size_t GetPixelCount() const { return width_ * height_; }
    void SetResolution(double horizontal, double vertical);
    /// Checks a finished row for pixels that are not opaque.
    void NoteAlpha(std::size_t row);
    void SetAlpha() { hasAlpha_ = true; }
    void SetRemark(ORVImageRemark remark) { remark_ = remark; }
    void SetProfileSize(std::size_t bytes) { profileSize_ = bytes; }

    /// The image with its pixels; the caller owns one reference. Null when out of memory.
    ORVPixelImage* Finish();
    /// An image whose pixels stay compressed. The stored size must be allowed. `source.bytes` is ignored.
    /// @param isConverted  colours are converted to sRGB
    ORVPixelImage* FinishJpeg(std::vector<std::uint8_t> file, const ORVJpegSource& source, bool isConverted);

    using Decoder = ORVPixelImage* (*)(const void* bytes, std::size_t size);
    /// Decodes an image. For a large image, keeps only the file, so that a document with many images needs
    /// memory for one at a time.
    /// @param decoder  returns the image with its pixels, or null
    static ORVPixelImage* DecodeAndKeepSmaller(Decoder decoder, const void* bytes, std::size_t size);

private:
    std::size_t width_ = 0, height_ = 0, rowBytes_ = 0;
    double horizontalResolution_ = 0.0, verticalResolution_ = 0.0;
    bool hasAlpha_ = false;
    ORVImageRemark remark_ = ORVImageRemark::kNone;
    std::size_t profileSize_ = 0;
    ORVPixelImage::Pixels pixels_;
};

/// Decodes a JPEG that was checked when it was read; applies its orientation and converts it to sRGB.
/// @param isConverted  its colours are not sRGB
/// @param rgba         4 bytes for each stored pixel @return false when out of memory
bool DecodeJpegPixels(const ORVJpegSource& source, bool isConverted, std::uint8_t* rgba);
