#pragma once

#include <string>
#include <vector>

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

/// All installed faces in the catalogue's order, each once. They come from the index of faces where there is
/// one that is up to date, else from fontconfig, and then the index is written anew.
std::vector<InstalledFace> FindInstalledFaces();

/// Lets the process do without the index (false) or with it (true, the default).
void UseFaceIndex(bool use);
