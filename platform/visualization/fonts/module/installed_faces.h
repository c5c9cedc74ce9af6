// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/visualization/fonts/InstalledFace.h"

/// All distinct installed faces in catalogue order, and the header of the face index that holds them: empty
/// if no index does.
struct InstalledFaces {
    std::vector<InstalledFace> faces;
    std::string indexHeader;
};

/// Finds the installed faces. Taken from the face index if that is up to date, else
/// from fontconfig, in which case the index is rewritten. Throws FontFailure when fontconfig cannot be used.
/// @param mayUseIndex  whether the host allows the index
InstalledFaces FindInstalledFaces(bool mayUseIndex);
