// SPDX-License-Identifier: Apache-2.0
#pragma once

/// The four numbers of a box, in the drawing's own coordinates (y down), as given, unchecked.
struct ORVPrtViewBox {
    double minX = 0.0, minY = 0.0, width = 0.0, height = 0.0;  ///< user units
    friend bool operator==(const ORVPrtViewBox&, const ORVPrtViewBox&) = default;
};
