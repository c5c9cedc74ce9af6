// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/images/jpeg_segments.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "platform/visualization/images/image_colours.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

enum Marker : std::uint8_t {
    kTemporary = 0x01,
    kFirstRestart = 0xD0,
    kStartOfImage = 0xD8,
    kEndOfImage = 0xD9,
    kStartOfScan = 0xDA,
    kApp1 = 0xE1,
    kApp2 = 0xE2,
};

// Segment identifiers, including the terminating zeros.
constexpr std::string_view kExif("Exif\0\0", 6), kProfile("ICC_PROFILE\0", 12);

bool StartsWith(Bytes bytes, std::string_view name) {
    return bytes.size() >= name.size() && std::memcmp(bytes.data(), name.data(), name.size()) == 0;
}

/// Numbers in a TIFF structure. Reads beyond the end return 0.
class TiffNumbers {
public:
    explicit TiffNumbers(Bytes bytes) : bytes_(bytes), isLittle_(StartsWith(bytes, "II")) {}
    bool IsSound() const { return (isLittle_ || StartsWith(bytes_, "MM")) && U16(2) == 42; }
    std::uint32_t U16(std::size_t at) const {
        return isLittle_ ? U8(at) | U8(at + 1) << 8U : U8(at) << 8U | U8(at + 1);
    }
    std::uint32_t U32(std::size_t at) const {
        return isLittle_ ? U16(at) | U16(at + 2) << 16U : U16(at) << 16U | U16(at + 2);
    }

private:
    std::uint32_t U8(std::size_t at) const { return at < bytes_.size() ? bytes_[at] : 0U; }

    Bytes bytes_;
    bool isLittle_;
};

/// Collects the segments of a profile. Each starts with its number, from 1, and the total number.
class ProfilePieces {
public:
    void Add(Bytes segment) {
        if (segment.size() < 2) return Break();
        const std::size_t number = segment[0], count = segment[1];
        if (count_ == 0) count_ = count;
        if (number == 0 || number > count || count != count_ || !pieces_[number - 1].empty()) return Break();
        pieces_[number - 1] = segment.subspan(2);
        size_ += segment.size() - 2;
    }

    void Finish(JpegSegments& segments) {
        for (std::size_t i = 0; i < count_; ++i)
            if (pieces_[i].empty()) Break();
        if (size_ > kLongestProfile) Break();
        segments.isProfileBroken = isBroken_;
        if (isBroken_) return;
        segments.profile.reserve(size_);
        for (const Bytes& piece : pieces_)
            segments.profile.insert(segments.profile.end(), piece.begin(), piece.end());
    }

private:
    void Break() { isBroken_ = true; }

    std::array<Bytes, 255> pieces_{};
    std::size_t count_ = 0, size_ = 0;
    bool isBroken_ = false;
};

/// Calls `take` with the marker and content of each segment up to the first scan.
template <class Take>
void ForEachSegment(Bytes file, Take take) {
    std::size_t at = 0;
    while (at + 2 <= file.size() && file[at] == 0xFF) {
        const std::uint8_t marker = file[at + 1];
        if (marker == 0xFF) {  // fill bytes may precede a marker
            ++at;
            continue;
        }
        at += 2;
        if (marker == kStartOfScan || marker == kEndOfImage) return;
        if (marker == kTemporary || (marker >= kFirstRestart && marker <= kStartOfImage)) continue;
        if (at + 2 > file.size()) return;
        const std::size_t length = std::size_t{file[at]} << 8U | file[at + 1];  // includes the length field
                                                                                // itself
        if (length < 2 || length > file.size() - at) return;
        take(marker, file.subspan(at + 2, length - 2));
        at += length;
    }
}

}  // namespace

int ReadExifOrientation(std::span<const std::uint8_t> exif) {
    constexpr std::uint32_t kOrientation = 0x0112, kShort = 3;
    constexpr std::size_t kEntrySize = 12;
    const TiffNumbers numbers(exif);
    if (!numbers.IsSound()) return 1;
    const std::size_t directory = numbers.U32(4);
    const std::size_t count = numbers.U16(directory);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + i * kEntrySize;
        if (entry + kEntrySize > exif.size()) return 1;
        if (numbers.U16(entry) != kOrientation) continue;
        const std::uint32_t value = numbers.U16(entry + 8);
        const bool isSound = numbers.U16(entry + 2) == kShort && numbers.U32(entry + 4) == 1;
        return isSound && value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
    }
    return 1;
}

JpegSegments ReadJpegSegments(std::span<const std::uint8_t> file) {
    JpegSegments segments;
    ProfilePieces pieces;
    bool hasExif = false;
    ForEachSegment(file, [&](std::uint8_t marker, Bytes content) {
        if (marker == kApp1 && !hasExif && StartsWith(content, kExif)) {
            hasExif = true;
            segments.orientation = ReadExifOrientation(content.subspan(kExif.size()));
        } else if (marker == kApp2 && StartsWith(content, kProfile)) {
            pieces.Add(content.subspan(kProfile.size()));
        }
    });
    pieces.Finish(segments);
    return segments;
}
