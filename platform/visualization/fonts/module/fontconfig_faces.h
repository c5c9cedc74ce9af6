// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fontconfig/fontconfig.h>

#include "platform/visualization/fonts/InstalledFace.h"

/// fontconfig's configuration, read now if nobody has yet. It stays as long as the process. Throws
/// FontFailure or std::bad_alloc where it cannot be read as it should.
FcConfig* FontconfigConfiguration();

/// All faces that fontconfig knows, in the catalogue's order, each once.
std::vector<InstalledFace> AskInstalledFaces();

/// Whether a font without outlines has this family, full or PostScript name, among those that were there when
/// this was first asked.
bool HasBitmapFont(std::string_view name);

/// The files and folders that decide what AskInstalledFaces() answers, those that are missing included.
/// @return nothing when the answer depends on more than such paths
std::optional<std::vector<std::string>> PathsThatDecide();

std::string TextOf(FcPattern* pattern, const char* object);
int NumberOf(FcPattern* pattern, const char* object, int otherwise);
/// What tells a face from all others: its path and its number in the file.
std::string FileKey(std::string_view path, unsigned int index);
std::string FileKey(FcPattern* pattern);
