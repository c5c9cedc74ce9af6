// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/visualization/fonts/InstalledFace.h"

/// All installed faces in the catalogue's order, each once. They come from the index of faces where there is
/// one that is up to date, else from fontconfig, and then the index is written anew. Throws FontFailure where
/// fontconfig cannot be asked.
/// @param mayUseIndex  as the host says
std::vector<InstalledFace> FindInstalledFaces(bool mayUseIndex);
