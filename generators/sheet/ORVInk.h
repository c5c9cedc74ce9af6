#pragma once

#include <cstddef>
#include <unordered_map>

#include "generators/common/ORVColourMode.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

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
    /// For lines and text.
    ORVPrintColour ConvertLine(const ORVPrintColour& colour) const;
    /// For areas. @return false when the area is to be left out
    bool ConvertArea(ORVPrintColour& colour) const;
    /// The image to show instead; it lives until the next call.
    const ORVPixelImage& ConvertPicture(const ORVPixelImage& image) { return Convert(image, false); }
    const ORVPixelImage& ConvertPattern(const ORVPixelImage& image) { return Convert(image, true); }

private:
    struct Entry {
        ORVRef<const ORVPixelImage> source;  // keeps the address from being used again
        ORVRef<const ORVPixelImage> converted;
    };
    using Entries = std::unordered_map<const ORVPixelImage*, Entry>;
    const ORVPixelImage& Convert(const ORVPixelImage& image, bool isPattern);

    const ORVColourMode mode_, areaMode_;
    const std::size_t keptBytes_;
    Entries pictures_, patterns_;
    std::size_t bytes_ = 0;  // of converted pixels
};
