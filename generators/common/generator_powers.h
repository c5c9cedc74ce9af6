// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintGenerator.h"

/// Value of GetPowers for a generator that supports everything.
inline constexpr unsigned int kAllPowers = ORVPrintGenerator::kGradients | ORVPrintGenerator::kClipPaths |
                                           ORVPrintGenerator::kLayers | ORVPrintGenerator::kBlendModes |
                                           ORVPrintGenerator::kMasks | ORVPrintGenerator::kFilters;
