// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

#include "platform/visualization/images/ORVPixelImage.h"
#include "platform/visualization/images/ORVPixelImageBuilder.h"

namespace {

constexpr std::size_t kFileHeaderSize = 14;
constexpr std::size_t kCoreHeaderSize = 12, kInfoHeaderSize = 40, kOs2HeaderSize = 64;
constexpr std::size_t kColourMasksHeaderSize = 52,
                      kAlphaMaskHeaderSize = 56;  // headers that contain the masks

enum Compression : std::uint32_t { kNone = 0, kRle8 = 1, kRle4 = 2, kBitFields = 3, kAlphaBitFields = 6 };

using Colour = std::array<std::uint8_t, 4>;  // RGBA

/// Little-endian numbers at an offset. Reads beyond the end return 0.
class Bytes {
public:
    explicit Bytes(std::span<const std::uint8_t> all) : all_(all) {}
    std::size_t Size() const { return all_.size(); }
    const std::uint8_t* At(std::size_t offset) const { return all_.data() + offset; }
    std::uint32_t U8(std::size_t offset) const { return offset < all_.size() ? all_[offset] : 0u; }
    std::uint32_t U16(std::size_t offset) const { return U8(offset) | U8(offset + 1) << 8; }
    std::uint32_t U32(std::size_t offset) const { return U16(offset) | U16(offset + 2) << 16; }
    std::int32_t I32(std::size_t offset) const { return static_cast<std::int32_t>(U32(offset)); }

private:
    std::span<const std::uint8_t> all_;
};

/// A colour channel in a pixel of 16 or 32 bits.
class Channel {
public:
    Channel() = default;
    explicit Channel(std::uint32_t mask) : mask_(mask), shift_(mask ? std::countr_zero(mask) : 0) {
        const std::uint32_t largest = mask >> shift_;
        for (std::uint32_t value = 0; value < 256 && value <= largest; ++value)
            eightBits_[value] =
                static_cast<std::uint8_t>((value * 255 + largest / 2) / std::max(largest, 1u));
        // Only the upper eight bits of a wider channel are used.
        excess_ = std::max(0, static_cast<int>(std::bit_width(largest)) - 8);
    }
    bool IsPresent() const { return mask_ != 0; }
    std::uint8_t Of(std::uint32_t pixel) const {
        const std::uint32_t value = (pixel & mask_) >> shift_;
        return excess_ ? static_cast<std::uint8_t>(value >> excess_) : eightBits_[value & 255];
    }
    /// True when the bits of the mask are contiguous.
    bool IsSound() const { return std::has_single_bit((std::uint64_t{mask_} >> shift_) + 1); }

private:
    std::uint32_t mask_ = 0;
    int shift_ = 0, excess_ = 0;
    std::array<std::uint8_t, 256> eightBits_ = {};
};

class BmpReading {
public:
    explicit BmpReading(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    ORVPixelImage* Read() {
        if (!ReadHeader() || !ReadPalette() || !ReadMasks()) return nullptr;
        // An offset that points into the headers is ignored: pixels follow the tables.
        if (pixelOffset_ < kFileHeaderSize + headerSize_) pixelOffset_ = endOfTables_;
        if (pixelOffset_ >= bytes_.Size()) return nullptr;
        const bool runLengths = compression_ == kRle4 || compression_ == kRle8;
        if (!(runLengths ? ReadRunLengths() : ReadRows())) return nullptr;
        return builder_.Finish();
    }

private:
    bool ReadHeader() {
        if (bytes_.Size() < kFileHeaderSize + kCoreHeaderSize || bytes_.U8(0) != 'B' || bytes_.U8(1) != 'M')
            return false;
        pixelOffset_ = bytes_.U32(10);
        headerSize_ = bytes_.U32(14);
        std::uint64_t width = 0, height = 0;
        if (headerSize_ == kCoreHeaderSize) {
            width = bytes_.U16(18);
            height = bytes_.U16(20);
            bits_ = bytes_.U16(24);
        } else {
            if (headerSize_ < kInfoHeaderSize || headerSize_ > bytes_.Size() - kFileHeaderSize) return false;
            const std::int64_t signedWidth = bytes_.I32(18), signedHeight = bytes_.I32(22);
            if (signedWidth <= 0) return false;
            width = static_cast<std::uint64_t>(signedWidth);
            topDown_ = signedHeight < 0;
            height = static_cast<std::uint64_t>(topDown_ ? -signedHeight : signedHeight);
            bits_ = bytes_.U16(28);
            compression_ = bytes_.U32(30);
            builder_.SetResolution(bytes_.I32(38), bytes_.I32(42));
            if (HasProfile()) builder_.SetRemark(ORVImageRemark::kOtherColours);
        }
        if (!ORVPixelImageBuilder::IsAllowed(width, height)) return false;
        width_ = static_cast<std::size_t>(width);
        height_ = static_cast<std::size_t>(height);
        endOfTables_ = kFileHeaderSize + headerSize_;
        return IsKnownCombination();
    }

    /// Whether the file has a colour profile, embedded or linked.
    bool HasProfile() const {
        constexpr std::size_t kHeaderWithColours = 108, kColourSpace = 70;
        constexpr std::uint32_t kEmbedded = 0x4D424544, kLinked = 0x4C494E4B;
        const std::uint32_t space = headerSize_ < kHeaderWithColours ? 0 : bytes_.U32(kColourSpace);
        return space == kEmbedded || space == kLinked;
    }

    bool IsKnownCombination() const {
        // In a header of this size, larger codes have other meanings.
        if (headerSize_ == kOs2HeaderSize && compression_ > kRle4) return false;
        switch (compression_) {
            case kNone:
                return bits_ == 1 || bits_ == 4 || bits_ == 8 || bits_ == 16 || bits_ == 24 || bits_ == 32;
            case kRle8: return bits_ == 8 && !topDown_;
            case kRle4: return bits_ == 4 && !topDown_;
            case kBitFields:
            case kAlphaBitFields: return bits_ == 16 || bits_ == 32;
            default: return false;
        }
    }

    bool ReadPalette() {
        palette_.fill({0, 0, 0, 255});
        if (bits_ > 8) return true;
        const bool core = headerSize_ == kCoreHeaderSize;
        const std::size_t entrySize = core ? 3 : 4, most = std::size_t{1} << bits_;
        std::size_t count = core ? 0 : bytes_.U32(46);
        if (count == 0) {
            count = most;
            // Core files often have fewer colours than declared: the table ends where the pixels begin.
            if (core && pixelOffset_ > endOfTables_)
                count = std::min(count, (pixelOffset_ - endOfTables_) / entrySize);
        }
        count = std::min(count, most);
        if (count * entrySize > bytes_.Size() - endOfTables_) return false;
        for (std::size_t index = 0; index < count; ++index) {
            const std::uint8_t* entry = bytes_.At(endOfTables_ + index * entrySize);
            palette_[index] = {entry[2], entry[1], entry[0], 255};
        }
        endOfTables_ += count * entrySize;
        return true;
    }

    bool ReadMasks() {
        if (bits_ == 16) SetMasks(0x7C00, 0x03E0, 0x001F, 0);
        if (bits_ == 32) SetMasks(0x00FF0000, 0x0000FF00, 0x000000FF, 0);
        if (compression_ != kBitFields && compression_ != kAlphaBitFields) return true;

        constexpr std::size_t kMasksOffset = kFileHeaderSize + kInfoHeaderSize;
        const bool hasAlphaMask = compression_ == kAlphaBitFields || headerSize_ >= kAlphaMaskHeaderSize;
        const std::size_t end = kMasksOffset + (hasAlphaMask ? 16 : 12);
        if (end > bytes_.Size()) return false;
        SetMasks(bytes_.U32(kMasksOffset), bytes_.U32(kMasksOffset + 4), bytes_.U32(kMasksOffset + 8),
                 hasAlphaMask ? bytes_.U32(kMasksOffset + 12) : 0);
        if (headerSize_ < kColourMasksHeaderSize || end > endOfTables_) endOfTables_ = end;
        return std::all_of(channels_.begin(), channels_.end(),
                           [](const Channel& channel) { return channel.IsSound(); });
    }

    void SetMasks(std::uint32_t red, std::uint32_t green, std::uint32_t blue, std::uint32_t alpha) {
        channels_ = {Channel(red), Channel(green), Channel(blue), Channel(alpha)};
    }

    std::uint8_t* OutputRow(std::size_t fileRow) const {
        return builder_.GetRow(topDown_ ? fileRow : height_ - 1 - fileRow);
    }

    bool ReadRows() {
        const std::uint64_t usedBytes = (std::uint64_t{width_} * bits_ + 7) / 8,
                            rowBytes = (usedBytes + 3) / 4 * 4;
        // The padding of the last row may be missing.
        if (rowBytes * (height_ - 1) + usedBytes > bytes_.Size() - pixelOffset_) return false;
        if (!builder_.SetSize(width_, height_)) return false;
        for (std::size_t row = 0; row < height_; ++row) {
            const std::uint8_t* in = bytes_.At(pixelOffset_ + row * static_cast<std::size_t>(rowBytes));
            if (bits_ <= 8)
                ReadIndexedRow(in, OutputRow(row));
            else if (bits_ == 24)
                ReadBgrRow(in, OutputRow(row));
            else
                ReadMaskedRow(in, OutputRow(row));
        }
        if (channels_[3].IsPresent()) SettleAlpha();
        return true;
    }

    void ReadIndexedRow(const std::uint8_t* in, std::uint8_t* out) const {
        const unsigned int perByte = 8 / bits_, mask = (1u << bits_) - 1;
        for (std::size_t column = 0; column < width_; ++column) {
            const unsigned int shift = 8 - bits_ * static_cast<unsigned int>(column % perByte + 1);
            Put(out, column, palette_[(in[column / perByte] >> shift) & mask]);
        }
    }

    void ReadBgrRow(const std::uint8_t* in, std::uint8_t* out) const {
        for (std::size_t column = 0; column < width_; ++column, in += 3)
            Put(out, column, {in[2], in[1], in[0], 255});
    }

    void ReadMaskedRow(const std::uint8_t* in, std::uint8_t* out) const {
        const std::size_t pixelBytes = bits_ / 8;
        for (std::size_t column = 0; column < width_; ++column, in += pixelBytes) {
            std::uint32_t pixel = in[0] | static_cast<std::uint32_t>(in[1]) << 8;
            if (pixelBytes == 4)
                pixel |= static_cast<std::uint32_t>(in[2]) << 16 | static_cast<std::uint32_t>(in[3]) << 24;
            Put(out, column,
                {channels_[0].Of(pixel), channels_[1].Of(pixel), channels_[2].Of(pixel),
                 channels_[3].IsPresent() ? channels_[3].Of(pixel) : std::uint8_t{255}});
        }
    }

    /// Writers without alpha support leave the channel 0 everywhere: such an image is opaque.
    void SettleAlpha() {
        unsigned int any = 0;
        for (std::size_t row = 0; row < height_ && !any; ++row)
            for (std::size_t column = 0; column < width_; ++column)
                any |= builder_.GetRow(row)[column * 4 + 3];
        for (std::size_t row = 0; row < height_; ++row) {
            if (!any)
                for (std::size_t column = 0; column < width_; ++column)
                    builder_.GetRow(row)[column * 4 + 3] = 255;
            builder_.NoteAlpha(row);
        }
    }

    /// Decodes run lengths: pairs of a count and a value; a count of 0 is an escape. Skipped pixels stay
    /// transparent.
    bool ReadRunLengths() {
        if (!builder_.SetSize(width_, height_)) return false;
        std::size_t at = pixelOffset_, column = 0, row = 0;
        std::uint64_t written = 0;
        bool ended = false;
        while (!ended && bytes_.Size() - at >= 2) {
            const std::uint32_t count = bytes_.U8(at), value = bytes_.U8(at + 1);
            at += 2;
            if (count > 0) {
                if (row >= height_) return false;
                written += PutRun(row, column, count, [&](std::uint32_t i) { return Index(value, i); });
                continue;
            }
            switch (value) {
                case 0:  // end of line
                    column = 0;
                    ++row;
                    break;
                case 1: ended = true; break;
                case 2:  // move
                    if (bytes_.Size() - at < 2) return false;
                    column = std::min(width_, column + bytes_.U8(at));
                    row += bytes_.U8(at + 1);
                    at += 2;
                    break;
                default: {  // literal indices, padded to 16 bits
                    const std::size_t used = bits_ == 8 ? value : (value + 1) / 2;
                    if (row >= height_ || bytes_.Size() - at < used) return false;
                    written += PutRun(row, column, value, [&](std::uint32_t i) {
                        return bits_ == 8 ? bytes_.U8(at + i) : Index(bytes_.U8(at + i / 2), i);
                    });
                    at += std::min(used + used % 2, bytes_.Size() - at);
                }
            }
            if (row > height_) return false;
        }
        // Without an end mark, a file is complete when its last row is.
        const bool lastRowFull = row >= height_ || (row + 1 == height_ && column == width_);
        if (!ended && !lastRowFull) return false;
        if (written < std::uint64_t{width_} * height_) {
            builder_.SetAlpha();
        } else {
            for (std::size_t line = 0; line < height_; ++line) builder_.NoteAlpha(line);
        }
        return true;
    }

    /// The i-th index of a run: the two nibbles of the byte alternate in 4-bit images.
    std::uint32_t Index(std::uint32_t byte, std::uint32_t i) const {
        if (bits_ == 8) return byte;
        return i % 2 == 0 ? byte >> 4 : byte & 15;
    }

    /// Writes a run up to the end of the row and advances. @return number of pixels written
    template <class IndexOf>
    std::size_t PutRun(std::size_t row, std::size_t& column, std::uint32_t count, IndexOf indexOf) const {
        const std::size_t fits = std::min<std::size_t>(count, width_ - column);
        std::uint8_t* out = OutputRow(row);
        for (std::size_t i = 0; i < fits; ++i)
            Put(out, column + i, palette_[indexOf(static_cast<std::uint32_t>(i)) & 255]);
        column += fits;
        return fits;
    }

    static void Put(std::uint8_t* row, std::size_t column, const Colour& colour) {
        std::memcpy(row + column * 4, colour.data(), 4);
    }

    Bytes bytes_;
    std::size_t pixelOffset_ = 0, headerSize_ = 0;
    std::size_t endOfTables_ = 0;  // end of palette and masks
    std::size_t width_ = 0, height_ = 0;
    bool topDown_ = false;
    unsigned int bits_ = 0;
    std::uint32_t compression_ = kNone;
    std::array<Colour, 256> palette_ = {};
    std::array<Channel, 4> channels_;
    ORVPixelImageBuilder builder_;
};

ORVPixelImage* DecodeBmp(const void* bytes, std::size_t size) {
    return BmpReading({static_cast<const std::uint8_t*>(bytes), size}).Read();
}

}  // namespace

ORVPixelImage* ReadMemBMPPixelImage(const void* bytes, std::size_t size, int /*flags*/) {
    return bytes ? ORVPixelImageBuilder::DecodeAndKeepSmaller(DecodeBmp, bytes, size) : nullptr;
}
