#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fontconfig/fontconfig.h>

#include "platform/visualization/fonts/installed_faces.h"

/// fontconfig's configuration, read now if nobody has yet. It stays as long as the process; null when there
/// is none.
FcConfig* FontconfigConfiguration();

/// All faces that fontconfig knows, in the catalogue's order, each once.
ORV_PLATFORM_EXPORT std::vector<InstalledFace> AskInstalledFaces();

/// The files and folders that decide what AskInstalledFaces() answers, those that are missing included.
/// @return nothing when the answer depends on more than such paths
ORV_PLATFORM_EXPORT std::optional<std::vector<std::string>> PathsThatDecide();

std::string TextOf(FcPattern* pattern, const char* object);
int NumberOf(FcPattern* pattern, const char* object, int otherwise);
/// What tells a face from all others: its path and its number in the file.
std::string FileKey(std::string_view path, unsigned int index);
std::string FileKey(FcPattern* pattern);
