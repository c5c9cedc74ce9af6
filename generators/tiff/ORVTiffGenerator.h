// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVRasterGenerator.h"

class ORVOutput;

/// Writes a multi-page TIFF file: colours and greys with Deflate, black and white with Group 4 fax
/// compression. A file that may exceed 4 gigabytes is written as BigTIFF.
class ORVTiffGenerator final : public ORVRasterGenerator {
public:
    /// @param output  receives one part; must outlive the generator
    ORVTiffGenerator(ORVOutput& output, const ORVRasterOptions& options);
};
