// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "generators/raster/image_samples.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

/// An image prepared for drawing.
struct ImageSampler {
    std::shared_ptr<const ImageSamples> samples;
    ORVMathAffine2D toSamples;  // from device space
    bool repeats = false;
    bool isSmooth = true;
    std::uint64_t made = 0;  ///< pixels of the image read to make the samples in this call

    /// Writes premultiplied RGBA colours of the pixels [begin, end) of a row, and of up to three more.
    void Read(int row, int begin, int end, std::uint8_t* rgba) const;
    /// Samples read per pixel.
    int GetReads() const;
    /// True if the image has a single opaque sample; `colour` then gets its red, green and blue.
    bool GetColour(ORVPrintColour& colour) const;

private:
    void ReadNearest(int row, int begin, int end, std::uint8_t* rgba) const;
    bool IsSingle() const { return samples->GetWidth() == 1 && samples->GetHeight() == 1; }
};
