// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_images.h"

#include <libdeflate.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <span>
#include <string>
#include <unordered_map>
#include <utility>

#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_syntax.h"

namespace {

// Maximum memory of images kept after they were written.
constexpr std::size_t kKeptBytes = std::size_t{512} << 20U;

/// Filters rows as PNG does, which PDF supports: smooth images become small numbers.
class RowFilter {
public:
    RowFilter(std::size_t rowBytes, std::size_t pixelBytes)
        : pixelBytes_(pixelBytes), before_(rowBytes, 0), filtered_(rowBytes + 1) {}

    /// The filtered row, preceded by the number of its filter. Tries three filters and uses the one with the
    /// smallest values.
    std::string_view Filter(std::span<const std::uint8_t> row) {
        std::array<std::size_t, 3> sums{};
        for (std::size_t i = 0; i < row.size(); ++i) {
            const int left = i < pixelBytes_ ? 0 : row[i - pixelBytes_];
            sums[0] += Size(row[i]);
            sums[1] += Size(static_cast<std::uint8_t>(row[i] - left));
            sums[2] += Size(static_cast<std::uint8_t>(row[i] - before_[i]));
        }
        std::size_t best = 0;
        for (std::size_t i = 1; i < sums.size(); ++i)
            if (sums[i] < sums[best]) best = i;
        filtered_[0] = static_cast<char>(best);
        for (std::size_t i = 0; i < row.size(); ++i) {
            const int left = i < pixelBytes_ ? 0 : row[i - pixelBytes_];
            const int base = best == 0 ? 0 : best == 1 ? left : before_[i];
            filtered_[i + 1] = static_cast<char>(row[i] - base);
        }
        before_.assign(row.begin(), row.end());
        return {filtered_.data(), filtered_.size()};
    }

private:
    static std::size_t Size(std::uint8_t value) { return value < 128 ? value : 256U - value; }

    const std::size_t pixelBytes_;
    std::vector<std::uint8_t> before_;
    std::vector<char> filtered_;
};

std::string SizeEntries(int width, int height, unsigned int bits) {
    return "/Subtype/Image/Width " + std::to_string(width) + "/Height " + std::to_string(height) +
           "/BitsPerComponent " + std::to_string(bits);
}

std::string SizeEntries(const ORVPixelImage& image, unsigned int bits) {
    return SizeEntries(image.GetWidth(), image.GetHeight(), bits);
}

/// From stored to displayed pixels, both as unit squares with y pointing down.
ORVMathAffine2D TurnOf(int orientation) {
    constexpr std::array<ORVMathAffine2D, 8> kTurns{{{1.0, 0.0, 0.0, 1.0, 0.0, 0.0},
                                                     {-1.0, 0.0, 0.0, 1.0, 1.0, 0.0},
                                                     {-1.0, 0.0, 0.0, -1.0, 1.0, 1.0},
                                                     {1.0, 0.0, 0.0, -1.0, 0.0, 1.0},
                                                     {0.0, 1.0, 1.0, 0.0, 0.0, 0.0},
                                                     {0.0, -1.0, 1.0, 0.0, 1.0, 0.0},
                                                     {0.0, -1.0, -1.0, 0.0, 1.0, 1.0},
                                                     {0.0, 1.0, -1.0, 0.0, 0.0, 1.0}}};
    return kTurns[static_cast<std::size_t>(orientation - 1)];
}

/// Determines the most compact lossless representation of an image.
class PixelSurvey {
public:
    explicit PixelSurvey(std::span<const std::uint8_t> rgba) {
        std::uint32_t latest = 0;
        for (std::size_t i = 0; i < rgba.size(); i += 4) {
            alphas_[rgba[i + 3]] = true;
            const std::uint32_t colour = Colour(&rgba[i]);
            if (colour == latest && i > 0) continue;
            latest = colour;
            if (rgba[i] != rgba[i + 1] || rgba[i] != rgba[i + 2])
                isGray_ = false;
            else
                grays_[rgba[i]] = true;
            if (HasPalette()) AddColour(colour);
        }
    }

    static std::uint32_t Colour(const std::uint8_t* pixel) {
        return std::uint32_t{pixel[0]} << 16U | std::uint32_t{pixel[1]} << 8U | pixel[2];
    }

    bool IsGray() const { return isGray_; }
    /// True if there are few colours.
    bool HasPalette() const { return colours_.size() <= kMostColours; }
    /// Bits per palette index.
    unsigned int GetPaletteBits() const {
        const std::size_t count = colours_.size();
        return count <= 2 ? 1 : count <= 4 ? 2 : count <= 16 ? 4 : 8;
    }
    const std::vector<std::uint32_t>& GetPalette() const { return colours_; }
    std::uint8_t GetNumber(std::uint32_t colour) const { return numbers_.at(colour); }
    /// Bits that represent the greys, or the alphas, without loss.
    unsigned int GetGrayBits() const { return BitsFor(grays_); }
    unsigned int GetAlphaBits() const { return BitsFor(alphas_); }

private:
    static constexpr std::size_t kMostColours = 256;

    void AddColour(std::uint32_t colour) {
        if (numbers_.try_emplace(colour, static_cast<std::uint8_t>(colours_.size())).second)
            colours_.push_back(colour);
    }
    static unsigned int BitsFor(const std::array<bool, 256>& used) {
        for (const unsigned int bits : {1U, 2U, 4U}) {
            const unsigned int step = 255U / ((1U << bits) - 1U);
            bool fits = true;
            for (unsigned int value = 0; value < 256; ++value) fits &= !used[value] || value % step == 0;
            if (fits) return bits;
        }
        return 8;
    }

    bool isGray_ = true;
    std::array<bool, 256> grays_{}, alphas_{};
    std::vector<std::uint32_t> colours_;
    std::unordered_map<std::uint32_t, std::uint8_t> numbers_;
};

/// Writes an image whose rows `fill` converts to bytes.
/// @param bits    per sample
/// @param isFiltered  whether adjacent samples are likely to be similar
template <class Fill>
void WriteRows(PdfFile& file, unsigned int object, const ORVPixelImage& image, const std::string& entries,
               std::size_t samples, unsigned int bits, bool isFiltered, Fill fill) {
    std::string all = SizeEntries(image, bits) + entries;
    if (isFiltered)
        all += "/DecodeParms<</Predictor 15/Colors " + std::to_string(samples) + "/Columns " +
               std::to_string(image.GetWidth()) + ">>";
    file.BeginStream(object, all);
    const auto width = static_cast<std::size_t>(image.GetWidth());
    std::vector<std::uint8_t> row((width * samples * bits + 7) / 8);
    RowFilter filter(isFiltered ? row.size() : 0, samples);
    const std::span<const std::uint8_t> rgba = image.GetPixels();
    for (std::size_t start = 0; start < rgba.size(); start += width * 4) {
        fill(rgba.subspan(start, width * 4), row);
        if (isFiltered)
            file.AppendToStream(filter.Filter(row));
        else
            file.AppendToStream({reinterpret_cast<const char*>(row.data()), row.size()});
    }
    file.EndStream();
}

/// Writes one number per pixel, with this many bits.
template <class Number>
void WriteNumbers(PdfFile& file, unsigned int object, const ORVPixelImage& image, const std::string& entries,
                  unsigned int bits, bool isFiltered, Number number) {
    WriteRows(file, object, image, entries, 1, bits, isFiltered,
              [&](std::span<const std::uint8_t> pixels, std::vector<std::uint8_t>& row) {
                  std::fill(row.begin(), row.end(), std::uint8_t{0});
                  const std::size_t inByte = 8U / bits;
                  for (std::size_t x = 0; x < pixels.size() / 4; ++x) {
                      const std::size_t shift = 8U - bits - bits * (x % inByte);
                      row[x / inByte] |= static_cast<std::uint8_t>(number(&pixels[4 * x]) << shift);
                  }
              });
}

/// Writes one of the four channels, with this many bits.
void WriteChannel(PdfFile& file, unsigned int object, const ORVPixelImage& image, const std::string& entries,
                  unsigned int bits, std::size_t channel) {
    const unsigned int shift = 8U - bits;
    WriteNumbers(
        file, object, image, entries + "/ColorSpace/DeviceGray", bits, bits == 8,
        [=](const std::uint8_t* pixel) { return static_cast<unsigned int>(pixel[channel] >> shift); });
}

void WritePalette(PdfFile& file, unsigned int object, const ORVPixelImage& image, const std::string& entries,
                  const PixelSurvey& survey) {
    std::string table;
    for (const std::uint32_t colour : survey.GetPalette())
        for (const unsigned int shift : {16U, 8U, 0U})
            if (!survey.IsGray() || shift == 0) table += static_cast<char>(colour >> shift);
    std::string space = "/ColorSpace[/Indexed/Device";
    space += survey.IsGray() ? "Gray " : "RGB ";
    space += std::to_string(survey.GetPalette().size() - 1);
    AppendPdfBytes(space, table);
    std::uint32_t latest = survey.GetPalette().front();
    std::uint8_t number = 0;
    WriteNumbers(file, object, image, entries + space + "]", survey.GetPaletteBits(), false,
                 [&](const std::uint8_t* pixel) {
                     const std::uint32_t colour = PixelSurvey::Colour(pixel);
                     if (colour != latest) {
                         latest = colour;
                         number = survey.GetNumber(colour);
                     }
                     return static_cast<unsigned int>(number);
                 });
}

void WriteColours(PdfFile& file, unsigned int object, const ORVPixelImage& image,
                  const std::string& entries) {
    WriteRows(file, object, image, entries + "/ColorSpace/DeviceRGB", 3, 8, true,
              [](std::span<const std::uint8_t> pixels, std::vector<std::uint8_t>& row) {
                  std::uint8_t* to = row.data();
                  for (std::size_t i = 0; i < pixels.size(); i += 4) {
                      *to++ = pixels[i];
                      *to++ = pixels[i + 1];
                      *to++ = pixels[i + 2];
                  }
              });
}

/// Writes a JPEG file unchanged. @return false if readers may not interpret its colours correctly
bool WriteJpeg(PdfFile& file, const ORVPixelImage& image, const std::string& common, PdfImage& written) {
    const ORVJpegSource* jpeg = image.GetTurnedJpegSource();
    if (!jpeg) return false;
    std::string entries =
        SizeEntries(jpeg->storedWidth, jpeg->storedHeight, 8) + common + "/Filter/DCTDecode";
    switch (jpeg->colourSpace) {
        case ORVJpegSource::ColourSpace::kGrey:
            entries += "/ColorSpace/DeviceGray";
            written.isGray = true;
            break;
        case ORVJpegSource::ColourSpace::kYCbCr:
            entries += "/ColorSpace/DeviceRGB/DecodeParms<</ColorTransform 1>>";
            break;
        case ORVJpegSource::ColourSpace::kRGB:
            entries += "/ColorSpace/DeviceRGB/DecodeParms<</ColorTransform 0>>";
            break;
        case ORVJpegSource::ColourSpace::kCMYK:
        case ORVJpegSource::ColourSpace::kYCCK: return false;
    }
    if (jpeg->orientation != 1) {
        constexpr ORVMathAffine2D kFlip{1.0, 0.0, 0.0, -1.0, 0.0, 1.0};
        written.turn = kFlip * TurnOf(jpeg->orientation) * kFlip;
        written.isTurned = true;
    }
    file.WriteStream(written.object, entries, std::string(jpeg->bytes.begin(), jpeg->bytes.end()),
                     PdfFile::Packing::kStored);
    return true;
}

PdfImage WriteImage(PdfFile& file, const ORVPixelImage& image, bool smooth) {
    PdfImage written;
    written.object = file.Reserve();
    const std::string common = smooth ? "/Interpolate true" : "";
    if (WriteJpeg(file, image, common, written)) return written;
    const std::span<const std::uint8_t> rgba = image.GetPixels();
    if (rgba.empty()) throw std::bad_alloc();
    const PixelSurvey survey(rgba);
    written.isGray = survey.IsGray();
    written.hasAlpha = image.HasAlpha();
    std::string entries = common;
    if (image.HasAlpha()) {
        const unsigned int mask = file.Reserve();
        WriteChannel(file, mask, image, common, survey.GetAlphaBits(), 3);
        entries += "/SMask " + PdfReference(mask);
    }
    const unsigned int plainBits = survey.IsGray() ? survey.GetGrayBits() : 24;
    if (survey.HasPalette() && survey.GetPaletteBits() < plainBits)
        WritePalette(file, written.object, image, entries, survey);
    else if (survey.IsGray())
        WriteChannel(file, written.object, image, entries, survey.GetGrayBits(), 0);
    else
        WriteColours(file, written.object, image, entries);
    return written;
}

std::span<const std::uint8_t> Bytes(const ORVPixelImage& image) {
    const ORVJpegSource* jpeg = image.GetTurnedJpegSource();
    return jpeg ? jpeg->bytes : image.GetPixels();
}

std::uint64_t HashOf(std::span<const std::uint8_t> bytes) {
    return std::uint64_t{libdeflate_crc32(0, bytes.data(), bytes.size())} << 32U |
           libdeflate_adler32(1, bytes.data(), bytes.size());
}

bool IsSameContent(const ORVPixelImage& a, const ORVPixelImage& b) {
    if (a.GetWidth() != b.GetWidth() || a.GetHeight() != b.GetHeight() ||
        !a.GetTurnedJpegSource() != !b.GetTurnedJpegSource())
        return false;
    const std::span<const std::uint8_t> left = Bytes(a), right = Bytes(b);
    return !left.empty() && std::equal(left.begin(), left.end(), right.begin(), right.end());
}

std::size_t PixelBytes(const ORVPixelImage& image) {
    return static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight()) * 4;
}

}  // namespace

const PdfImage& PdfImageTable::Find(const ORVPixelImage& image, bool smooth, PdfFile& file) {
    Group& group = smooth ? smooth_ : plain_;
    if (const auto known = group.byAddress.find(&image); known != group.byAddress.end())
        return known->second.written;
    if (bytes_ > kKeptBytes) {
        smooth_ = {};
        plain_ = {};
        bytes_ = 0;
    }
    bytes_ += PixelBytes(image);
    Entry entry{ORVRef<const ORVPixelImage>::Share(&image), {}};

    const std::uint64_t hash = HashOf(Bytes(image));
    const auto [first, last] = group.byContent.equal_range(hash);
    for (auto candidate = first; candidate != last && entry.written.object == 0; ++candidate)
        if (IsSameContent(image, *candidate->second)) {
            entry.written = group.byAddress.at(candidate->second).written;
            candidate->second->ReleasePixels();
        }
    if (entry.written.object == 0) {
        entry.written = WriteImage(file, image, smooth);
        group.byContent.emplace(hash, &image);
    }
    image.ReleasePixels();
    return group.byAddress.emplace(&image, std::move(entry)).first->second.written;
}
