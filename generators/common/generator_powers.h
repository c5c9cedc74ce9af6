// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintGenerator.h"

/// What a generator says that can do all there is.
inline constexpr unsigned int kAllPowers = ORVPrintGenerator::kGradients | ORVPrintGenerator::kClipPaths |
                                           ORVPrintGenerator::kLayers | ORVPrintGenerator::kBlendModes |
                                           ORVPrintGenerator::kMasks | ORVPrintGenerator::kFilters;
