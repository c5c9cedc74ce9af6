// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fontconfig/fontconfig.h>

#include "platform/visualization/fonts/InstalledFace.h"

/// The fontconfig configuration, loaded on the first call and kept until the process ends. Throws FontFailure
/// or std::bad_alloc when it cannot be loaded completely.
FcConfig* FontconfigConfiguration();

/// All distinct faces known to fontconfig, in catalogue order.
std::vector<InstalledFace> AskInstalledFaces();

/// Whether a font without outlines has that family, full or PostScript name. Uses the fonts that were
/// installed at the first call.
bool HasBitmapFont(std::string_view name);

/// The files and folders that determine the result of AskInstalledFaces(), including missing ones.
/// @return nullopt when the result depends on more than such paths
std::optional<std::vector<std::string>> PathsThatDecide();

std::string TextOf(FcPattern* pattern, const char* object);
int NumberOf(FcPattern* pattern, const char* object, int otherwise);
/// Unique key of a face: its path and its index in the file.
std::string FileKey(std::string_view path, unsigned int index);
std::string FileKey(FcPattern* pattern);
