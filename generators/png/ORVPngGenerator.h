// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVRasterGenerator.h"

class ORVOutput;

/// Writes each page as a PNG picture. A page of black, white and greys alone becomes a grey picture.
class ORVPngGenerator final : public ORVRasterGenerator {
public:
    /// @param output  receives one part a page; must outlive the generator
    ORVPngGenerator(ORVOutput& output, const ORVRasterOptions& options);
};
