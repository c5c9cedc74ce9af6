// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/visualization/fonts/InstalledFace.h"

/// All distinct installed faces in catalogue order. Taken from the face index if that is up to date, else
/// from fontconfig, in which case the index is rewritten. Throws FontFailure when fontconfig cannot be used.
/// @param mayUseIndex  whether the host allows the index
std::vector<InstalledFace> FindInstalledFaces(bool mayUseIndex);
