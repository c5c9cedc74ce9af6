// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVRasterGenerator.h"

class ORVOutput;

/// Writes each page as a PNG image. Pages that contain only greys become greyscale images.
class ORVPngGenerator final : public ORVRasterGenerator {
public:
    /// @param output  receives one part per page; must outlive the generator
    ORVPngGenerator(ORVOutput& output, const ORVRasterOptions& options);
};
