// SPDX-License-Identifier: Apache-2.0
#include "generators/png/ORVPngGenerator.h"

#include "generators/png/png_sink.h"

ORVPngGenerator::ORVPngGenerator(ORVOutput& output, const ORVRasterOptions& options)
    : ORVRasterGenerator(std::make_unique<PngSink>(output), options) {}
