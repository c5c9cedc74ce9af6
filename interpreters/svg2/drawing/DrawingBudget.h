// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "interpreters/svg2/document/Document.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace svg2 {

/// What one drawing may cost: elements that are visited, those that are drawn again because they are used,
/// and how deep they lie within each other. Boxes that are computed on the way count as well.
class DrawingBudget {
public:
    explicit DrawingBudget(const ORVPrintParameters& parameters)
        : drawnLeft_(parameters.GetDrawLimit()),
          visitsLeft_(parameters.GetRepeatLimit()),
          pixelsLeft_(ORVPrintLimits::Get(ORVPrintLimit::kDocumentPixels)) {}

    /// Allows for what a document holds: stops what is out of proportion, not what is large.
    void AllowFor(const Document& document) {
        visitsLeft_ += (1 + kGrowthPerPrimitive) * (document.GetCount() + document.GetPayload());
    }
    /// Allows for places that the document states, such as the vertices of a line with markers.
    void AllowForPlaces(std::size_t count) { visitsLeft_ += (1 + kGrowthPerPrimitive) * count; }
    /// Counts one element. One with much to read counts as several.
    /// @param payload  of the element
    /// @return false when there have been too many
    bool TakeElement(std::uint64_t payload = 0) {
        return Take(drawnLeft_, 1) && Take(visitsLeft_, 1 + payload);
    }
    /// Counts an image that is shown for the first time; what its file pays for is free.
    /// @return false when there have been too many pixels
    bool TakePixels(const ORVPixelImage& image) {
        const auto width = static_cast<std::uint64_t>(image.GetWidth());
        const std::uint64_t pixels = width * static_cast<std::uint64_t>(image.GetHeight());
        const std::uint64_t free = image.GetFileSize() * kPixelsPerFileByte;
        return pixels <= free || Take(pixelsLeft_, pixels - free);
    }
    /// What a mask counts for that is drawn again: formats make parts of their own of masks.
    static constexpr std::uint64_t kMaskPayload = 30;
    /// Levels of the stack that one drawing may take.
    static constexpr int kGreatestDepth = 1500;
    /// Clips, masks, markers and patterns within each other.
    static constexpr std::size_t kGreatestNesting = 64;

private:
    static bool Take(std::uint64_t& left, std::uint64_t count) {
        const bool isWithin = count <= left;
        left = isWithin ? left - count : 0;
        return isWithin;
    }

    std::uint64_t drawnLeft_, visitsLeft_, pixelsLeft_;
};

}  // namespace svg2
