// SPDX-License-Identifier: Apache-2.0
#include "generators/png/png_sink.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "generators/common/ORVOutput.h"
#include "generators/common/deflate_chunk.h"
#include "generators/common/generator_status.h"
#include "generators/png/png_rows.h"
#include "platform/system/ORVThreadValue.h"

namespace {

constexpr std::array<std::uint8_t, 8> kSignature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::uint8_t kGreyColour = 0, kTrueColour = 2;

void PutNumber(std::uint32_t number, std::uint8_t* to) {
    for (unsigned int i = 0; i < 4; ++i) to[i] = static_cast<std::uint8_t>(number >> (24 - 8 * i));
}

void AppendNumber(std::uint32_t number, std::vector<std::uint8_t>& bytes) {
    bytes.resize(bytes.size() + 4);
    PutNumber(number, bytes.data() + bytes.size() - 4);
}

/// Adds length, type and checksum to a chunk. `bytes` has 8 unused bytes from `start`, then the content.
void CloseChunk(std::string_view type, std::size_t start, std::vector<std::uint8_t>& bytes) {
    const std::size_t contentStart = start + 8;
    PutNumber(static_cast<std::uint32_t>(bytes.size() - contentStart), bytes.data() + start);
    std::memcpy(bytes.data() + start + 4, type.data(), 4);
    AppendNumber(ORVCrc32(std::span(bytes).subspan(start + 4)), bytes);
}

/// Memory that a thread reuses from band to band.
struct Workspace {
    std::vector<std::uint8_t> rows;
    PngRows compressor;
};

/// Copies the rows of a band, each with its filter byte. The result is valid until the next call.
/// @param isInverse  inverts black and white: in PNG, black is 0
std::span<const std::uint8_t> CopyRows(const RasterBand& band, bool isInverse,
                                       std::vector<std::uint8_t>& memory) {
    const std::size_t rowBytes = band.rowBytes + 1;
    const std::size_t size = rowBytes * static_cast<std::size_t>(band.rowCount);
    memory.resize(size + RasterBand::kTail);
    std::uint8_t* to = memory.data();
    const std::uint8_t* from = band.pixels;
    for (int y = 0; y < band.rowCount; ++y, to += band.rowBytes, from += band.stride) {
        *to++ = 0;
        if (isInverse)
            std::transform(from, from + band.rowBytes, to,
                           [](std::uint8_t byte) { return static_cast<std::uint8_t>(~byte); });
        else
            std::memcpy(to, from, band.rowBytes);
    }
    return std::span(memory).first(size);
}

/// The Adler-32 checksum of rows. That of a blank row is computed once.
std::uint32_t ChecksumOf(std::span<const std::uint8_t> rows, std::size_t rowBytes,
                         std::span<const std::uint8_t> isDrawn) {
    std::uint32_t sum = 1, paper = 0;
    for (std::size_t row = 0, end = 0; row < isDrawn.size(); row = end) {
        end = row + 1;
        if (isDrawn[row] == 0) {
            if (paper == 0) paper = ORVAdler32(rows.subspan(row * rowBytes, rowBytes));
            sum = ORVCombineAdler32(sum, paper, rowBytes);
            continue;
        }
        while (end < isDrawn.size() && isDrawn[end] != 0) ++end;
        const std::size_t size = (end - row) * rowBytes;
        sum = ORVCombineAdler32(sum, ORVAdler32(rows.subspan(row * rowBytes, size)), size);
    }
    return sum;
}

/// Converts a title to Latin-1. @return false if it has other characters
bool ToLatin1(std::string_view utf8, std::vector<std::uint8_t>& out) {
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (byte >= 0x20 && byte < 0x7F) {
            out.push_back(byte);
            continue;
        }
        // U+0080 to U+00FF take two bytes; those below U+00A0 are control characters.
        const bool isLatin = (byte == 0xC2 || byte == 0xC3) && i + 1 < utf8.size();
        const unsigned int character =
            isLatin ? (byte & 0x03U) << 6U | (static_cast<unsigned char>(utf8[i + 1]) & 0x3FU) : 0;
        if (character < 0xA0) return false;
        out.push_back(static_cast<std::uint8_t>(character));
        ++i;
    }
    return true;
}

}  // namespace

void PngSink::Write(std::span<const std::uint8_t> bytes) {
    if (!failed_ && output_.Write(bytes.data(), bytes.size()) != 1) failed_ = true;
}

void PngSink::WriteChunk(std::string_view type, std::span<const std::uint8_t> content) {
    std::vector<std::uint8_t> bytes(8);
    bytes.insert(bytes.end(), content.begin(), content.end());
    CloseChunk(type, 0, bytes);
    Write(bytes);
}

void PngSink::WriteTitle(std::string_view title) {
    if (title.empty()) return;
    constexpr std::string_view kKeyword = "Title";
    std::vector<std::uint8_t> text(kKeyword.begin(), kKeyword.end());
    text.push_back(0);
    if (ToLatin1(title, text)) {
        WriteChunk("tEXt", text);
        return;
    }
    // International text: not compressed, no language, no translated keyword, then UTF-8.
    text.assign(kKeyword.begin(), kKeyword.end());
    text.insert(text.end(), {0, 0, 0, 0, 0});
    text.insert(text.end(), title.begin(), title.end());
    WriteChunk("iTXt", text);
}

int PngSink::BeginPage(const RasterPageInfo& page) {
    failed_ = false;
    pixels_ = page.pixels;
    bandRows_ = page.bandRows;
    adler_ = 1;
    blank_.clear();
    if (output_.BeginPart() != 1) return kOutputFailed;
    isOpen_ = true;
    Write(kSignature);

    std::vector<std::uint8_t> header;
    AppendNumber(static_cast<std::uint32_t>(page.width), header);
    AppendNumber(static_cast<std::uint32_t>(page.height), header);
    header.push_back(pixels_ == RasterPixels::kBlack ? 1 : 8);
    header.push_back(pixels_ == RasterPixels::kRGB ? kTrueColour : kGreyColour);
    header.insert(header.end(), {0, 0, 0});  // deflate, standard filters, not interlaced
    WriteChunk("IHDR", header);

    const auto dotsPerMetre = static_cast<std::uint32_t>(std::lround(page.dotsPerInch / 0.0254));
    std::vector<std::uint8_t> resolution;
    AppendNumber(dotsPerMetre, resolution);
    AppendNumber(dotsPerMetre, resolution);
    resolution.push_back(1);  // per metre
    WriteChunk("pHYs", resolution);
    WriteTitle(page.title);
    WriteChunk("IDAT", kZlibHeader);
    return failed_ ? kOutputFailed : kGeneratorDone;
}

void PngSink::EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const {
    const bool isUsual = band.rowCount == bandRows_;
    if (band.isBlank && isUsual) {
        const std::lock_guard lock(blankMutex_);
        if (!blank_.empty()) {
            bytes = blank_;
            return;
        }
    }
    static ORVThreadValue<Workspace> workspaces;
    Workspace& workspace = workspaces.Get();
    const std::size_t rowBytes = band.rowBytes + 1;
    // Rows are not filtered (type 0): even areas compress as they are.
    const std::span rows =
        band.rowFront == 1 ? std::span(band.pixels - 1, rowBytes * static_cast<std::size_t>(band.rowCount))
                           : CopyRows(band, pixels_ == RasterPixels::kBlack, workspace.rows);
    const std::span isDrawn(band.isDrawn, static_cast<std::size_t>(band.rowCount));
    // The checksum precedes the chunk, for WriteBand.
    AppendNumber(ChecksumOf(rows, rowBytes, isDrawn), bytes);
    bytes.resize(bytes.size() + 8);
    workspace.compressor.Compress(rows, rowBytes, pixels_ == RasterPixels::kRGB ? 3 : 1, isDrawn, bytes);
    CloseChunk("IDAT", 4, bytes);
    if (band.isBlank && isUsual) {
        const std::lock_guard lock(blankMutex_);
        blank_ = bytes;
    }
}

int PngSink::WriteBand(const RasterBand& band, const std::vector<std::uint8_t>& bytes) {
    std::uint32_t adler = 0;
    for (std::size_t i = 0; i < 4; ++i) adler = adler << 8U | bytes[i];
    adler_ = ORVCombineAdler32(
        adler_, adler,
        static_cast<std::uint64_t>(band.rowBytes + 1) * static_cast<std::uint64_t>(band.rowCount));
    Write(std::span(bytes).subspan(4));
    return failed_ ? kOutputFailed : kGeneratorDone;
}

int PngSink::EndPage() {
    if (!isOpen_) return kOutputFailed;
    isOpen_ = false;
    std::vector<std::uint8_t> end(std::begin(kLastBlock), std::end(kLastBlock));
    AppendNumber(adler_, end);
    WriteChunk("IDAT", end);
    WriteChunk("IEND", {});
    const bool isClosed = output_.EndPart() == 1;
    return failed_ || !isClosed ? kOutputFailed : kGeneratorDone;
}
