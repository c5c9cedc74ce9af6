// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

/// Applies an outer transformation to drawing calls, for instance to place a page on a larger sheet. The
/// transformations of the call itself and of its patterns, gradients and clip paths are all mapped. Results
/// may point into this object and into the arguments: they are valid until the next call of Map and while the
/// arguments live.
class ORVCallMapper {
public:
    /// True if the matrix is finite and invertible. Nothing drawn under any other matrix is visible.
    static bool IsUsable(const ORVMathAffine2D& map);

    /// @return nothing if the call would be invisible, for instance because its coordinates overflowed
    std::optional<ORVPrintShape> Map(const ORVMathAffine2D& outer, const ORVPrintShape& shape);
    std::optional<ORVPrintText> Map(const ORVMathAffine2D& outer, const ORVPrintText& text);
    static std::optional<ORVPrintImage> Map(const ORVMathAffine2D& outer, const ORVPrintImage& image);
    /// Bounding box of the mapped corners; empty if `box` is empty.
    static ORVMathBox2D Map(const ORVMathAffine2D& outer, const ORVMathBox2D& box);
    /// If the resulting transformation is not usable, the clip path is empty and hides everything.
    static ORVPrintClipPath Map(const ORVMathAffine2D& outer, const ORVPrintClipPath& clip);
    static ORVPrintLayer Map(const ORVMathAffine2D& outer, const ORVPrintLayer& layer);
    static ORVPrintMask Map(const ORVMathAffine2D& outer, const ORVPrintMask& mask);
    static ORVPrintFilter Map(const ORVMathAffine2D& outer, const ORVPrintFilter& filter);

private:
    const ORVPrintFill* MapFill(const ORVMathAffine2D& outer, const ORVPrintFill* fill);
    const ORVPrintStroke* MapStroke(const ORVMathAffine2D& outer, const ORVPrintStroke* stroke);

    ORVPrintFill fill_;
    ORVPrintStroke stroke_;
    ORVPrintGradient fillGradient_, strokeGradient_;
    ORVPrintPath clip_;
};
