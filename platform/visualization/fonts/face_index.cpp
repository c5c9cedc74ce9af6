// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/face_index.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>

#include "platform/visualization/fonts/font_cache_bytes.h"

namespace {

constexpr std::uint64_t kMagic = 0x31786449'6361466FULL;  // includes the version of the format
constexpr std::size_t kLeastWatchedSize = 4 + 1 + 7 * 8, kLeastFaceSize = 6 * 4 + 5 * 4;

void Put(CacheWriter& writer, const WatchedPath& watched) {
    writer.PutText(watched.path);
    writer.Put(static_cast<std::uint8_t>(watched.exists));
    writer.Put(watched.device);
    writer.Put(watched.inode);
    for (const std::int64_t number :
         {watched.size, watched.modified, watched.modifiedPart, watched.changed, watched.changedPart})
        writer.Put(number);
}

void Take(CacheReader& reader, WatchedPath& watched) {
    reader.TakeText(watched.path);
    std::uint8_t exists = 0;
    reader.Take(exists);
    watched.exists = exists != 0;
    reader.Take(watched.device);
    reader.Take(watched.inode);
    for (std::int64_t* number :
         {&watched.size, &watched.modified, &watched.modifiedPart, &watched.changed, &watched.changedPart})
        reader.Take(*number);
}

void Put(CacheWriter& writer, const InstalledFace& face) {
    for (const std::string* text :
         {&face.path, &face.foundry, &face.family, &face.style, &face.fullName, &face.postScriptName})
        writer.PutText(*text);
    writer.Put(static_cast<std::uint32_t>(face.index));
    for (const int number : {face.weight, face.slant, face.width, static_cast<int>(face.kind)})
        writer.Put(static_cast<std::int32_t>(number));
}

/// @return false when the data describe no valid face
bool Take(CacheReader& reader, InstalledFace& face) {
    for (std::string* text :
         {&face.path, &face.foundry, &face.family, &face.style, &face.fullName, &face.postScriptName})
        reader.TakeText(*text);
    std::uint32_t index = 0;
    reader.Take(index);
    face.index = index;
    std::int32_t kind = 0;
    for (int* number : {&face.weight, &face.slant, &face.width, &kind}) reader.Take(*number);
    face.kind = static_cast<ORVFont::Kind>(kind);
    const bool isOutline =
        kind == ORVFont::kTrueType || kind == ORVFont::kPostScript || kind == ORVFont::kCFF;
    return reader.IsGood() && isOutline && face.path.starts_with('/') &&
           face.path.find('\0') == std::string::npos && !face.family.empty();
}

WatchedPath StateOf(const std::string& path) {
    WatchedPath state;
    state.path = path;
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0) return state;
    state.exists = true;
    state.device = status.st_dev;
    state.inode = status.st_ino;
    state.size = status.st_size;
    state.modified = status.st_mtim.tv_sec;
    state.modifiedPart = status.st_mtim.tv_nsec;
    state.changed = status.st_ctim.tv_sec;
    state.changedPart = status.st_ctim.tv_nsec;
    return state;
}

}  // namespace

std::string EncodeFaceIndex(const FaceIndex& index) {
    CacheWriter body;
    body.PutText(index.environment);
    body.Put(static_cast<std::uint32_t>(index.watched.size()));
    for (const WatchedPath& watched : index.watched) Put(body, watched);
    body.Put(static_cast<std::uint32_t>(index.faces.size()));
    for (const InstalledFace& face : index.faces) Put(body, face);
    return SealCacheFile(kMagic, body.Bytes());
}

bool DecodeFaceIndex(std::string_view bytes, FaceIndex& index) {
    index = {};
    std::string_view body;
    if (!OpenCacheFile(bytes, kMagic, body)) return false;

    CacheReader reader(body);
    reader.TakeText(index.environment);
    index.watched.resize(reader.TakeCount(kLeastWatchedSize));
    for (WatchedPath& watched : index.watched) Take(reader, watched);
    index.faces.resize(reader.TakeCount(kLeastFaceSize));
    for (InstalledFace& face : index.faces)
        if (!Take(reader, face)) return false;
    return reader.IsAtEnd();
}

std::string FontEnvironment() {
    std::string environment;
    for (const char* name :
         {"FONTCONFIG_FILE", "FONTCONFIG_PATH", "FONTCONFIG_SYSROOT", "HOME", "LD_LIBRARY_PATH",
          "XDG_CACHE_HOME", "XDG_CONFIG_HOME", "XDG_DATA_DIRS", "XDG_DATA_HOME"}) {
        environment += name;
        // A variable that is set but empty differs from one that is not set.
        if (const char* value = std::getenv(name)) (environment += '=') += value;
        environment += '\n';
    }
    return environment;
}

std::vector<WatchedPath> Watch(const std::vector<std::string>& paths) {
    std::vector<WatchedPath> watched;
    watched.reserve(paths.size());
    for (const std::string& path : paths) watched.push_back(StateOf(path));
    return watched;
}

bool IsUnchanged(const std::vector<WatchedPath>& watched) {
    return std::all_of(watched.begin(), watched.end(),
                       [](const WatchedPath& before) { return StateOf(before.path) == before; });
}

bool IsOlderThan(const std::vector<WatchedPath>& watched, std::int64_t second) {
    return std::all_of(watched.begin(), watched.end(), [second](const WatchedPath& state) {
        return !state.exists || (state.modified < second && state.changed < second);
    });
}
