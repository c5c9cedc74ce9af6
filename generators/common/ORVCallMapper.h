#pragma once

#include <optional>

#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

/// Puts drawing calls under one more map, as when a page is placed on a larger sheet: the call's own maps,
/// its patterns and clips all follow. Results are valid until the next call, and as long as what was given.
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

private:
    const ORVPrintFill* MapFill(const ORVMathAffine2D& outer, const ORVPrintFill* fill);

    ORVPrintFill fill_;
    ORVPrintPath clip_;
};
