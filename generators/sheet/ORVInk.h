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

/// A part of an opacity.
inline std::uint8_t ORVDimmed(std::uint8_t opacity, double factor) {
    return static_cast<std::uint8_t>(opacity * factor + 0.5);
}

/// Turns colours and images into what a device without colours can show.
///
/// Greys are as light as the colours they stand for. In black and white, lines and text that are not white
/// become black, so that nothing drawn in a light colour is lost; areas become black when they are nearer to
/// black than to white, else white, and a light area that shows what lies below it is left out. Pictures are
/// made of black and white pixels that give their greys in the mean; pixels of patterns are black or white
/// each by itself. Formats that make dots of greys themselves get areas and pictures as greys instead.
class ORVInk {
public:
    /// @param keptBytes   converted pictures are made again when they take more, 4 bytes a pixel
    /// @param keepsGreys  in black and white, areas and pictures keep their greys
    explicit ORVInk(ORVColourMode mode, std::size_t keptBytes = std::size_t{64} << 20U,
                    bool keepsGreys = false)
        : mode_(mode),
          areaMode_(keepsGreys && mode == ORVColourMode::kMono ? ORVColourMode::kGrey : mode),
          keptBytes_(keptBytes) {}

    bool ChangesColours() const { return mode_ != ORVColourMode::kColour; }
    bool IsMono() const { return mode_ == ORVColourMode::kMono; }
    /// Whether areas and pictures keep no greys.
    bool AreAreasMono() const { return areaMode_ == ORVColourMode::kMono; }
    /// For lines and text.
    ORVPrintColour ConvertLine(const ORVPrintColour& colour) const;
    /// For areas. @return false when the area is to be left out
    bool ConvertArea(ORVPrintColour& colour) const;
    /// For gradients of areas, and of lines and text. The stops become those of a gradient that has only
    /// colours of the device: of greys, or in black and white with sharp steps; lines and text are then all
    /// black, or all white when every stop is.
    /// @return false when the area is to be left out
    bool ConvertStops(std::vector<ORVPrintGradientStop>& stops, bool isArea) const;
    /// The image to show instead; it lives until the next call.
    /// @param opacity  with which it is to be shown
    const ORVPixelImage& ConvertPicture(const ORVPixelImage& image, std::uint8_t opacity = 255) {
        return Convert(image, false, opacity);
    }
    const ORVPixelImage& ConvertPattern(const ORVPixelImage& image) { return Convert(image, true, 255); }

private:
    struct Entry {
        ORVRef<const ORVPixelImage> source;  // keeps the address from being used again
        ORVRef<const ORVPixelImage> converted;
    };
    using Entries = std::map<std::pair<const ORVPixelImage*, std::uint8_t>, Entry>;
    const ORVPixelImage& Convert(const ORVPixelImage& image, bool isPattern, std::uint8_t opacity);
    bool MakeSteps(std::vector<ORVPrintGradientStop>& stops) const;

    const ORVColourMode mode_, areaMode_;
    const std::size_t keptBytes_;
    Entries pictures_, patterns_;
    std::size_t bytes_ = 0;  // of converted pixels
};
