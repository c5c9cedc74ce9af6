// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

class ORVPrtColourTable;
class ORVPrtFillAttributes;
class ORVPrtStrokeAttributes;

/// Converts attribute sets of the model to paints, reusing results and memory from shape to shape.
class ORVPrintPaints {
public:
    /// @param colours  colour table of the page, may be null; must outlive this object
    explicit ORVPrintPaints(const ORVPrtColourTable* colours) : colours_(colours) {}

    /// @return null when the paint is invisible; valid until the next call
    const ORVPrintFill* MakeFill(const ORVPrtFillAttributes& attributes);
    const ORVPrintStroke* MakeStroke(const ORVPrtStrokeAttributes& attributes);

private:
    ORVPrintColour Colour(unsigned int index, std::uint8_t opacity) const;
    void MakeDashes(const std::vector<float>& pattern);

    const ORVPrtColourTable* colours_;
    ORVPrintFill fill_;
    ORVPrintStroke stroke_;
    std::vector<double> dashes_;
};
