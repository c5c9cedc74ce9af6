// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/images/png_colours.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <new>
#include <string_view>

#include "platform/visualization/images/image_colours.h"
#include "platform/visualization/images/jpeg_segments.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kSignatureSize = 8, kChunkOverhead = 12;

std::uint32_t Number(Bytes bytes, std::size_t at) {
    return std::uint32_t{bytes[at]} << 24U | std::uint32_t{bytes[at + 1]} << 16U |
           std::uint32_t{bytes[at + 2]} << 8U | bytes[at + 3];
}

/// The relevant chunks of the file.
struct Chunks {
    Bytes profile, srgb, gamma, chromaticities, codePoints, exif;
    bool hasDamagedProfile = false;

    Bytes* Find(std::string_view type) {
        if (type == "iCCP") return &profile;
        if (type == "sRGB") return &srgb;
        if (type == "gAMA") return &gamma;
        if (type == "cHRM") return &chromaticities;
        if (type == "cICP") return &codePoints;
        if (type == "eXIf") return &exif;
        return nullptr;
    }
};

Chunks FindChunks(Bytes file) {
    Chunks chunks;
    for (std::size_t at = kSignatureSize; at + kChunkOverhead <= file.size();) {
        const std::size_t length = Number(file, at);
        if (length > file.size() - at - kChunkOverhead) break;
        const std::string_view type(reinterpret_cast<const char*>(file.data()) + at + 4, 4);
        if (type == "IDAT" || type == "IEND") break;
        Bytes* const chunk = chunks.Find(type);
        if (chunk && chunk->empty()) {
            const uLong sum = crc32_z(0, file.data() + at + 4, length + 4);
            if (sum == Number(file, at + 8 + length))
                *chunk = file.subspan(at + 8, length);
            else if (chunk == &chunks.profile)
                chunks.hasDamagedProfile = true;
        }
        at += length + kChunkOverhead;
    }
    return chunks;
}

/// Decompresses a profile. @return false when it is invalid or too long
bool Inflate(Bytes packed, std::vector<std::uint8_t>& out) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) throw std::bad_alloc();
    struct End {
        z_stream& stream;
        ~End() { inflateEnd(&stream); }
    } const end{stream};
    stream.next_in = const_cast<Bytef*>(packed.data());  // only read
    stream.avail_in = static_cast<uInt>(packed.size());
    constexpr std::size_t kPiece = std::size_t{64} << 10U;
    int status = Z_OK;
    while (status == Z_OK && out.size() <= kLongestProfile) {
        const std::size_t before = out.size();
        out.resize(before + kPiece);
        stream.next_out = out.data() + before;
        stream.avail_out = static_cast<uInt>(kPiece);
        status = inflate(&stream, Z_NO_FLUSH);
        out.resize(out.size() - stream.avail_out);
    }
    if (status == Z_MEM_ERROR) throw std::bad_alloc();
    return status == Z_STREAM_END && out.size() <= kLongestProfile;
}

/// The chunk contains a name, a 0, the compression method (0) and the profile.
bool ReadProfile(Bytes chunk, std::vector<std::uint8_t>& profile) {
    constexpr std::size_t kLongestName = 79;
    const auto nameEnd =
        std::find(chunk.begin(),
                  chunk.begin() + static_cast<std::ptrdiff_t>(std::min(chunk.size(), kLongestName + 1)), 0);
    const auto start = static_cast<std::size_t>(nameEnd - chunk.begin()) + 2;
    if (start >= chunk.size() || *nameEnd != 0 || chunk[start - 1] != 0) return false;
    return Inflate(chunk.subspan(start), profile) && !profile.empty();
}

// Scale of stored colour values.
constexpr double kUnit = 100'000.0;

/// True for the value that writers use for sRGB: 1/2.2, within an invisible tolerance.
bool IsUsualGamma(double gamma) { return std::fabs(gamma * 2.2 - 1.0) < 0.05; }

bool AreUsual(const std::array<double, 8>& chromaticities) {
    constexpr std::array<double, 8> kSrgb{0.3127, 0.3290, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06};
    return std::equal(kSrgb.begin(), kSrgb.end(), chromaticities.begin(),
                      [](double a, double b) { return std::fabs(a - b) <= 0.01; });
}

/// Reads gamma and chromaticities. @return false when they are those of sRGB or invalid
bool ReadNumbers(const Chunks& chunks, bool isGrey, ORVColourDescription& description) {
    // Exponents outside this range are not plausible.
    constexpr double kLeastGamma = 0.02, kGreatestGamma = 10.0;
    if (chunks.gamma.size() == 4) description.gamma = Number(chunks.gamma, 0) / kUnit;
    const bool hasGamma = description.gamma >= kLeastGamma && description.gamma <= kGreatestGamma;
    if (!hasGamma) description.gamma = 0.0;
    bool hasChromaticities = false;
    if (chunks.chromaticities.size() == 32 && !isGrey) {
        std::array<double, 8>& at = description.chromaticities;
        hasChromaticities = true;
        for (std::size_t i = 0; i < at.size(); ++i) {
            at[i] = Number(chunks.chromaticities, 4 * i) / kUnit;
            // Some primaries are imaginary colours, but not far outside these bounds.
            if (at[i] > 1.5 || (i == 1 && at[i] < 0.01)) hasChromaticities = false;
        }
        if (hasChromaticities && AreUsual(at)) hasChromaticities = false;
        if (!hasChromaticities) at = {};
    }
    const bool hasUsualGamma = !hasGamma || IsUsualGamma(description.gamma);
    if (hasUsualGamma) description.gamma = 0.0;
    return !hasUsualGamma || hasChromaticities;
}

/// Whether H.273 code points are those of sRGB.
bool AreSrgb(Bytes codePoints) {
    constexpr std::array<std::uint8_t, 4> kSrgb{1, 13, 0, 1};
    return std::equal(codePoints.begin(), codePoints.end(), kSrgb.begin(), kSrgb.end());
}

}  // namespace

PngColours ReadPngColours(std::span<const std::uint8_t> file, bool isGrey) {
    const Chunks chunks = FindChunks(file);
    PngColours colours;
    colours.description.space =
        isGrey ? ORVColourDescription::Space::kGrey : ORVColourDescription::Space::kRGB;
    if (ReadExifOrientation(chunks.exif) != 1) colours.remark = ORVImageRemark::kNotTurned;
    if (!chunks.codePoints.empty()) {
        if (!AreSrgb(chunks.codePoints)) colours.remark = ORVImageRemark::kOtherColours;
        return colours;
    }
    if (chunks.hasDamagedProfile ||
        (!chunks.profile.empty() && !ReadProfile(chunks.profile, colours.profile))) {
        colours.remark = ORVImageRemark::kBrokenProfile;
        colours.profile.clear();
    } else if (!colours.profile.empty()) {
        colours.isDescribed = true;
        colours.description.profile = colours.profile;
    } else if (chunks.srgb.empty()) {
        colours.isDescribed = ReadNumbers(chunks, isGrey, colours.description);
    }
    return colours;
}
