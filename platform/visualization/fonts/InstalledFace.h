// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/visualization/fonts/ORVFont.h"

/// An installed face with outlines, as fontconfig describes it.
struct InstalledFace {
    std::string path;
    unsigned int index = 0;  ///< in its file
    std::string foundry, family, style, fullName, postScriptName;
    int weight = 400;  ///< as OpenType counts it
    int slant = 0;     ///< fontconfig's: 0 upright
    int width = 100;   ///< fontconfig's: 100 normal
    ORVFont::Kind kind = ORVFont::kTrueType;

    bool operator==(const InstalledFace&) const = default;
};
