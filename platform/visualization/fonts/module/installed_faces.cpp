// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/installed_faces.h"

#include <sys/auxv.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <utility>

#include "platform/visualization/fonts/face_index.h"
#include "platform/visualization/fonts/font_cache.h"
#include "platform/visualization/fonts/font_cache_bytes.h"
#include "platform/visualization/fonts/module/fontconfig_faces.h"

InstalledFaces FindInstalledFaces(bool mayUseIndex) {
    // A set-uid program must not trust the caller's environment.
    const bool mayUse = mayUseIndex && getauxval(AT_SECURE) == 0;
    const std::string folder = mayUse ? FontCacheFolder() : std::string();
    if (folder.empty()) return {AskInstalledFaces(), {}};

    FaceIndex index;
    std::string bytes;
    const std::string environment = FontEnvironment();
    if (ReadFontCache(folder, kFaceIndexFile, bytes) && DecodeFaceIndex(bytes, index) &&
        index.environment == environment && IsUnchanged(index.watched))
        return {std::move(index.faces), std::string(HeaderOfCacheFile(bytes))};

    const std::int64_t asked =
        std::chrono::duration_cast<std::chrono::seconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    index.environment = environment;
    index.faces = AskInstalledFaces();
    const std::optional<std::vector<std::string>> paths = PathsThatDecide();
    if (!paths) return {std::move(index.faces), {}};
    index.watched = Watch(*paths);
    // The index is not written if anything changed during the query, or might have within the clock
    // resolution.
    constexpr std::int64_t kSettled = 2;  // seconds
    // An empty list is not stored either: memory may have been too short to find any faces.
    std::string header;
    if (!index.faces.empty() && IsOlderThan(index.watched, asked - kSettled)) {
        bytes = EncodeFaceIndex(index);
        if (WriteFontCache(folder, kFaceIndexFile, bytes)) header = HeaderOfCacheFile(bytes);
    }
    return {std::move(index.faces), std::move(header)};
}
