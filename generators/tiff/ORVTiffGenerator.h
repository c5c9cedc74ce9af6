// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVRasterGenerator.h"

class ORVOutput;

/// Writes a document as one TIFF file of several pages: colours and greys deflated, black and white as Group
/// 4 fax. A file that may outgrow the classic form's 4 gigabytes is written in the big form.
class ORVTiffGenerator final : public ORVRasterGenerator {
public:
    /// @param output  receives one part; must outlive the generator
    ORVTiffGenerator(ORVOutput& output, const ORVRasterOptions& options);
};
