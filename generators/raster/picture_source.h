// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "generators/raster/picture_samples.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

/// A picture made ready for drawing.
struct PictureSource {
    std::shared_ptr<const PictureSamples> samples;
    ORVMathAffine2D toSamples;  // from the device
    bool repeats = false;
    bool isSmooth = true;
    std::uint64_t made = 0;  ///< pixels of the image that were looked at when the samples were made just now

    /// Writes the premultiplied colours (RGBA) of the pixels [begin, end) of a row, and for up to three more.
    void Read(int row, int begin, int end, std::uint8_t* rgba) const;
    /// Samples that are read for a pixel.
    int GetReads() const;
    /// True when the picture has one sample, and that is opaque. Sets red, green and blue of the colour then.
    bool GetColour(ORVPrintColour& colour) const;

private:
    void ReadNearest(int row, int begin, int end, std::uint8_t* rgba) const;
    bool IsSingle() const { return samples->GetWidth() == 1 && samples->GetHeight() == 1; }
};
