// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "interpreters/svg2/document/Document.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace svg2 {

/// Limits the cost of one drawing: the number of elements visited, of elements drawn repeatedly through
/// references, and the nesting depth. Computing boxes counts as well.
class DrawingBudget {
public:
    explicit DrawingBudget(const ORVPrintParameters& parameters)
        : drawnLeft_(parameters.GetDrawLimit()),
          visitsLeft_(parameters.GetRepeatLimit()),
          pixelsLeft_(ORVPrintLimits::Get(ORVPrintLimit::kDocumentPixels)) {}

    /// Raises the limit in proportion to the size of a document, so that only disproportionate work is
    /// stopped.
    void AllowFor(const Document& document) {
        visitsLeft_ += (1 + kGrowthPerPrimitive) * (document.GetCount() + document.GetPayload());
    }
    /// Raises the limit for explicit positions in the document, such as the vertices of a line with markers.
    void AllowForPlaces(std::size_t count) { visitsLeft_ += (1 + kGrowthPerPrimitive) * count; }
    /// Counts one element; one with much data counts as several.
    /// @param payload  of the element
    /// @return false if the limit is exceeded
    bool TakeElement(std::uint64_t payload = 0) {
        return Take(drawnLeft_, 1) && Take(visitsLeft_, 1 + payload);
    }
    /// Counts the pixels of an image on its first use; an amount in proportion to its file size is free.
    /// @return false if the limit is exceeded
    bool TakePixels(const ORVPixelImage& image) {
        const auto width = static_cast<std::uint64_t>(image.GetWidth());
        const std::uint64_t pixels = width * static_cast<std::uint64_t>(image.GetHeight());
        const std::uint64_t free = image.GetFileSize() * kPixelsPerFileByte;
        return pixels <= free || Take(pixelsLeft_, pixels - free);
    }
    /// Counts points of shapes that are repeated in all tiles of a pattern.
    /// @return false, with nothing counted, if the page would have too many
    bool TakeTilePoints(std::uint64_t count) { return TakeWhole(tilePointsLeft_, count); }
    /// Counts tiles within tiles, except plain ones.
    /// @return false, with nothing counted, if the page would have too many
    bool TakeInnerTiles(std::uint64_t count) { return TakeWhole(innerTilesLeft_, count); }
    /// Restarts what is counted for each page.
    void BeginPage() {
        tilePointsLeft_ = kMostTilePoints;
        innerTilesLeft_ = kMostInnerTiles;
    }
    /// Payload of a mask that is drawn repeatedly, as formats write each mask as a separate object.
    static constexpr std::uint64_t kMaskPayload = 30;
    /// Maximum depth of recursion in one drawing.
    static constexpr int kGreatestDepth = 1500;
    /// Maximum nesting of clips, masks, markers and patterns.
    static constexpr std::size_t kGreatestNesting = 64;

private:
    static bool Take(std::uint64_t& left, std::uint64_t count) {
        const bool isWithin = count <= left;
        left = isWithin ? left - count : 0;
        return isWithin;
    }

    static bool TakeWhole(std::uint64_t& left, std::uint64_t count) {
        const bool isWithin = count <= left;
        if (isWithin) left -= count;
        return isWithin;
    }

    static constexpr std::uint64_t kMostTilePoints = 2'000'000;  // up to about 45 MB
    static constexpr std::uint64_t kMostInnerTiles = 1000;       // each may itself contain many

    std::uint64_t drawnLeft_, visitsLeft_, pixelsLeft_;
    std::uint64_t tilePointsLeft_ = kMostTilePoints, innerTilesLeft_ = kMostInnerTiles;  // of the page
};

}  // namespace svg2
