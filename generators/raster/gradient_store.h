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

/// The gradients of a page, without duplicates: shapes may share a gradient, and gradients may share their
/// colour stops.
class GradientStore {
public:
    explicit GradientStore(RasterArena& arena) : arena_(arena) {}

    /// @param toDevice  from the gradient's coordinates
    /// @return the gradient, valid until the arena is cleared; null if the matrix cannot be inverted or the
    ///         gradient paints nothing
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
