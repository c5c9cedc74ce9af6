// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/face_index.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace {

// The file is for one machine: numbers are in native byte order, which the magic number reveals.
constexpr std::uint64_t kMagic = 0x31786449'6361466FULL;  // includes the version of the format
constexpr std::size_t kHeaderSize = 2 * sizeof(std::uint64_t);

/// Every step is a bijection of the state, so any change of a single word changes the result.
std::uint64_t Checksum(std::string_view bytes) {
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15ULL;
    std::uint64_t sum = bytes.size();
    while (!bytes.empty()) {
        std::uint64_t word = 0;
        const std::size_t count = std::min(bytes.size(), sizeof word);
        std::memcpy(&word, bytes.data(), count);
        bytes.remove_prefix(count);
        sum = (sum ^ word) * kOdd;
        sum ^= sum >> 29;
    }
    return sum;
}

class Writer {
public:
    template <class Number>
    void Put(Number number) {
        const std::size_t at = bytes_.size();
        bytes_.resize(at + sizeof number);
        std::memcpy(bytes_.data() + at, &number, sizeof number);
    }
    void PutText(std::string_view text) {
        Put(static_cast<std::uint32_t>(text.size()));
        bytes_ += text;
    }
    const std::string& Bytes() const { return bytes_; }

private:
    std::string bytes_;
};

/// Reads values from the front. After the first failure, all reads fail.
class Reader {
public:
    explicit Reader(std::string_view bytes) : rest_(bytes) {}

    template <class Number>
    void Take(Number& number) {
        if (isGood_ && rest_.size() >= sizeof number) {
            std::memcpy(&number, rest_.data(), sizeof number);
            rest_.remove_prefix(sizeof number);
        } else {
            number = 0;
            isGood_ = false;
        }
    }
    void TakeText(std::string& text) {
        std::uint32_t size = 0;
        Take(size);
        isGood_ = isGood_ && size <= rest_.size();
        if (!isGood_) return;
        text = rest_.substr(0, size);
        rest_.remove_prefix(size);
    }
    /// Reads the number of items that follow. @param leastSize  least size of an item in bytes
    std::size_t TakeCount(std::size_t leastSize) {
        std::uint32_t count = 0;
        Take(count);
        isGood_ = isGood_ && count <= rest_.size() / leastSize;
        return isGood_ ? count : 0;
    }
    bool IsGood() const { return isGood_; }
    bool IsAtEnd() const { return isGood_ && rest_.empty(); }

private:
    std::string_view rest_;
    bool isGood_ = true;
};

constexpr std::size_t kLeastWatchedSize = 4 + 1 + 7 * 8, kLeastFaceSize = 6 * 4 + 5 * 4;

void Put(Writer& writer, const WatchedPath& watched) {
    writer.PutText(watched.path);
    writer.Put(static_cast<std::uint8_t>(watched.exists));
    writer.Put(watched.device);
    writer.Put(watched.inode);
    for (const std::int64_t number :
         {watched.size, watched.modified, watched.modifiedPart, watched.changed, watched.changedPart})
        writer.Put(number);
}

void Take(Reader& reader, WatchedPath& watched) {
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

void Put(Writer& writer, const InstalledFace& face) {
    for (const std::string* text :
         {&face.path, &face.foundry, &face.family, &face.style, &face.fullName, &face.postScriptName})
        writer.PutText(*text);
    writer.Put(static_cast<std::uint32_t>(face.index));
    for (const int number : {face.weight, face.slant, face.width, static_cast<int>(face.kind)})
        writer.Put(static_cast<std::int32_t>(number));
}

/// @return false when the data describe no valid face
bool Take(Reader& reader, InstalledFace& face) {
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
    Writer body;
    body.PutText(index.environment);
    body.Put(static_cast<std::uint32_t>(index.watched.size()));
    for (const WatchedPath& watched : index.watched) Put(body, watched);
    body.Put(static_cast<std::uint32_t>(index.faces.size()));
    for (const InstalledFace& face : index.faces) Put(body, face);

    Writer header;
    header.Put(kMagic);
    header.Put(Checksum(body.Bytes()));
    return header.Bytes() + body.Bytes();
}

bool DecodeFaceIndex(std::string_view bytes, FaceIndex& index) {
    index = {};
    if (bytes.size() < kHeaderSize) return false;
    const std::string_view body = bytes.substr(kHeaderSize);
    Reader header(bytes.substr(0, kHeaderSize));
    std::uint64_t magic = 0, checksum = 0;
    header.Take(magic);
    header.Take(checksum);
    if (magic != kMagic || checksum != Checksum(body)) return false;

    Reader reader(body);
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
