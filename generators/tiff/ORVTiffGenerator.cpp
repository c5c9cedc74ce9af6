// SPDX-License-Identifier: Apache-2.0
#include "generators/tiff/ORVTiffGenerator.h"

#include "generators/tiff/tiff_sink.h"

ORVTiffGenerator::ORVTiffGenerator(ORVOutput& output, const ORVRasterOptions& options)
    : ORVRasterGenerator(std::make_unique<TiffSink>(output), options) {}
