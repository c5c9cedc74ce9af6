// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVRasterGenerator.h"

class ORVOutput;

/// Writes a document as a stream of PWG Raster, which driverless printers take: sRGB, grey of 8 bits, or
/// black of one bit.
class ORVPwgGenerator final : public ORVRasterGenerator {
public:
    /// @param output  receives one part; must outlive the generator
    ORVPwgGenerator(ORVOutput& output, const ORVRasterOptions& options);
};

/// Writes a document as a stream of Apple Raster ("URF"), which the printers of AirPrint take: sRGB, or grey
/// of 8 bits.
class ORVUrfGenerator final : public ORVRasterGenerator {
public:
    /// @param output  receives one part; must outlive the generator
    ORVUrfGenerator(ORVOutput& output, const ORVRasterOptions& options);
};
