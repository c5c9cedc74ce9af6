// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/visualization/fonts/ORVFont.h"

/// An installed outline face as described by fontconfig.
struct InstalledFace {
    std::string path;
    unsigned int index = 0;  ///< index in a font collection
    std::string foundry, family, style, fullName, postScriptName;
    int weight = 400;  ///< OpenType weight
    int slant = 0;     ///< fontconfig slant: 0 upright
    int width = 100;   ///< fontconfig width: 100 normal
    ORVFont::Kind kind = ORVFont::kTrueType;

    bool operator==(const InstalledFace&) const = default;
};
