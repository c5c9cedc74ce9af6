// SPDX-License-Identifier: Apache-2.0
#pragma once

/// A rectangle in the drawing's coordinates (y down), as specified and not validated.
struct ORVPrtViewBox {
    double minX = 0.0, minY = 0.0, width = 0.0, height = 0.0;  ///< user units
    friend bool operator==(const ORVPrtViewBox&, const ORVPrtViewBox&) = default;
};
