// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVRasterGenerator.h"

class ORVOutput;

/// Writes a PWG Raster document, for driverless printers: sRGB, 8-bit grey or 1-bit black.
class ORVPwgGenerator final : public ORVRasterGenerator {
public:
    /// @param output  receives one part; must outlive the generator
    ORVPwgGenerator(ORVOutput& output, const ORVRasterOptions& options);
};

/// Writes an Apple Raster ("URF") document, for AirPrint printers: sRGB or 8-bit grey.
class ORVUrfGenerator final : public ORVRasterGenerator {
public:
    /// @param output  receives one part; must outlive the generator
    ORVUrfGenerator(ORVOutput& output, const ORVRasterOptions& options);
};
