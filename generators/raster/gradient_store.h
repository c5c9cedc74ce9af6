// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "generators/raster/raster_gradient.h"
#include "generators/raster/raster_memory.h"

/// The gradients of a page. Equal colours are kept once, so that many shapes may share a gradient and many
/// gradients their colours.
class GradientStore {
public:
    explicit GradientStore(RasterArena& arena) : arena_(arena) {}

    /// @param toDevice  from the gradient's coordinates
    /// @return the gradient, which stays where it is until the arena is cleared; null when its map cannot be
    ///         inverted or its colours lie nowhere
    const RasterGradient* Find(const ORVPrintGradient& gradient, const ORVMathAffine2D& toDevice);
    void Clear();

private:
    const RasterGradientStops* FindStops(std::span<const ORVPrintGradientStop> stops);

    RasterArena& arena_;
    std::unordered_multimap<std::uint64_t, const RasterGradientStops*> stops_;  // by hash
    std::array<const RasterGradient*, 8> latest_{};
    std::size_t next_ = 0;
    std::vector<RasterGradientStops::Stop> draft_;
};
