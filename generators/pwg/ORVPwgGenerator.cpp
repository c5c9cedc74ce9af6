// SPDX-License-Identifier: Apache-2.0
#include "generators/pwg/ORVPwgGenerator.h"

#include "generators/pwg/pwg_sink.h"

ORVPwgGenerator::ORVPwgGenerator(ORVOutput& output, const ORVRasterOptions& options)
    : ORVRasterGenerator(std::make_unique<PwgSink>(output, PrintRaster::kPWG), options) {}

ORVUrfGenerator::ORVUrfGenerator(ORVOutput& output, const ORVRasterOptions& options)
    : ORVRasterGenerator(std::make_unique<PwgSink>(output, PrintRaster::kApple), options) {}
