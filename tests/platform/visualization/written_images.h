// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

using ByteList = std::vector<std::uint8_t>;
using Rgba = std::vector<std::uint8_t>;

/// A PNG to write. Samples have the range of the bit depth, up to 2^depth - 1.
struct PngToWrite {
    int width = 1, height = 1;
    int depth = 8;
    int colourType = 0;  ///< PNG colour type
    bool interlaced = false;
    std::function<unsigned(int x, int y, int channel)> sample;
    std::vector<std::uint8_t> palette = {};       ///< RGB triplets
    std::vector<std::uint8_t> paletteAlpha = {};  ///< tRNS of a palette
    int transparentGrey = -1;                     ///< tRNS of a grey image; -1 for none
    std::uint32_t pixelsPerMetre = 0;
};
ByteList WritePng(const PngToWrite& image);

/// A JPEG to write at full quality, without subsampling. `samples` are in the input colour space.
struct JpegToWrite {
    int width = 1, height = 1;
    int components = 3;
    int inputSpace = 2;   ///< J_COLOR_SPACE of the samples
    int storedSpace = 3;  ///< J_COLOR_SPACE of the file
    bool adobeMarker = false;
    bool progressive = false;
    int dotsPerInch = 0;
    unsigned restartInterval = 0;  ///< MCUs between two restart markers; 0 for none
    std::vector<std::uint8_t> samples = {};
};
ByteList WriteJpeg(const JpegToWrite& image);

/// A BMP with arbitrary headers: fields are written as given.
class BmpToWrite {
public:
    BmpToWrite& U8(unsigned value);
    BmpToWrite& U16(unsigned value);
    BmpToWrite& U32(std::uint32_t value);
    BmpToWrite& Append(const ByteList& bytes);
    /// The complete file: file header, the fields written so far, and the pixels.
    ByteList With(const ByteList& pixels) const;
    /// The common header of 40 bytes.
    static BmpToWrite Info(int width, int height, unsigned bits, std::uint32_t compression = 0,
                           std::uint32_t colours = 0);

private:
    ByteList header_;
};

/// The pixels of an image; empty for a null image.
Rgba PixelsOf(const ORVRef<ORVPixelImage>& image);

ORVRef<ORVPixelImage> ReadPng(const ByteList& bytes);
ORVRef<ORVPixelImage> ReadJpeg(const ByteList& bytes);
ORVRef<ORVPixelImage> ReadBmp(const ByteList& bytes);

/// Sets the pixel limit for its lifetime.
class PixelLimit {
public:
    explicit PixelLimit(std::uint64_t pixels) : before_(ORVPixelImage::GetPixelLimit()) {
        ORVPixelImage::SetPixelLimit(pixels);
    }
    PixelLimit(const PixelLimit&) = delete;
    PixelLimit& operator=(const PixelLimit&) = delete;
    ~PixelLimit() { ORVPixelImage::SetPixelLimit(before_); }

private:
    std::uint64_t before_;
};
