// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

/// Puts drawing calls under one more map, as when a page is placed on a larger sheet: the call's own maps,
/// its patterns, gradients and clips all follow. Results are valid until the next call, and as long as what
/// was given.
class ORVCallMapper {
public:
    /// True for maps that take areas to areas; under others nothing shows.
    static bool IsUsable(const ORVMathAffine2D& map);

    /// @return nothing when the call shows nothing, its numbers having left what can be counted
    std::optional<ORVPrintShape> Map(const ORVMathAffine2D& outer, const ORVPrintShape& shape);
    std::optional<ORVPrintText> Map(const ORVMathAffine2D& outer, const ORVPrintText& text);
    static std::optional<ORVPrintImage> Map(const ORVMathAffine2D& outer, const ORVPrintImage& image);
    /// The box around the mapped one, empty when that was.
    static ORVMathBox2D Map(const ORVMathAffine2D& outer, const ORVMathBox2D& box);
    /// Under a map that leaves no area, nothing shows in the clip.
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
