// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "generators/common/ORVColourMode.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Opacity multiplied by a factor from 0 to 1.
inline std::uint8_t ORVDimmed(std::uint8_t opacity, double factor) {
    return static_cast<std::uint8_t>(opacity * factor + 0.5);
}

/// Converts colours and images to those of a monochrome device.
///
/// Greys have the luminance of the colours they replace. In black and white, lines and text that are not
/// white become black, so that nothing drawn in a light colour is lost. Areas become black or white,
/// whichever is nearer; light areas that are transparent are left out. Images are dithered; pixels of
/// patterns are thresholded. For formats that dither greys themselves, areas and images become grey instead.
class ORVInk {
public:
    /// @param keptBytes   cache limit for converted images, at 4 bytes per pixel; beyond it images are
    ///                    converted again
    /// @param keepsGreys  in black and white, areas and images stay grey
    explicit ORVInk(ORVColourMode mode, std::size_t keptBytes = std::size_t{64} << 20U,
                    bool keepsGreys = false)
        : mode_(mode),
          areaMode_(keepsGreys && mode == ORVColourMode::kMono ? ORVColourMode::kGrey : mode),
          keptBytes_(keptBytes) {}

    bool ChangesColours() const { return mode_ != ORVColourMode::kColour; }
    bool IsMono() const { return mode_ == ORVColourMode::kMono; }
    /// Whether areas and images become black and white.
    bool AreAreasMono() const { return areaMode_ == ORVColourMode::kMono; }
    /// Converts the colour of a line or of text.
    ORVPrintColour ConvertLine(const ORVPrintColour& colour) const;
    /// Converts the colour of an area. @return false if the area is to be left out
    bool ConvertArea(ORVPrintColour& colour) const;
    /// Converts gradient stops to colours of the device: greys or, in black and white, sharp steps. For lines
    /// and text, all stops become black, or white if every stop is white.
    /// @return false if the area is to be left out
    bool ConvertStops(std::vector<ORVPrintGradientStop>& stops, bool isArea) const;
    /// Converts an image. The result is valid until the next call.
    /// @param opacity  with which the image is drawn
    const ORVPixelImage& ConvertImage(const ORVPixelImage& image, std::uint8_t opacity = 255) {
        return Convert(image, false, opacity);
    }
    const ORVPixelImage& ConvertPattern(const ORVPixelImage& image) { return Convert(image, true, 255); }

private:
    struct Entry {
        ORVRef<const ORVPixelImage> source;  // keeps the address from being reused
        ORVRef<const ORVPixelImage> converted;
    };
    using Entries = std::map<std::pair<const ORVPixelImage*, std::uint8_t>, Entry>;
    const ORVPixelImage& Convert(const ORVPixelImage& image, bool isPattern, std::uint8_t opacity);
    bool MakeSteps(std::vector<ORVPrintGradientStop>& stops) const;

    const ORVColourMode mode_, areaMode_;
    const std::size_t keptBytes_;
    Entries images_, patterns_;
    std::size_t bytes_ = 0;  // size of the converted pixels
};
