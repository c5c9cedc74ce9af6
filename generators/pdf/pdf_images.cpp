#include "generators/pdf/pdf_images.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>

#include "generators/pdf/pdf_file.h"

namespace {

// Images of drawings that are done need not be kept in memory for ever.
constexpr std::size_t kKeptBytes = std::size_t{512} << 20U;

/// Filters rows as PNG does, which the format knows, too: smooth pictures become small numbers.
class RowFilter {
public:
    RowFilter(std::size_t rowBytes, std::size_t pixelBytes)
        : pixelBytes_(pixelBytes), before_(rowBytes, 0), filtered_(rowBytes + 1) {}

    /// The filtered row, with its filter's number in front. Takes the one of three filters that gives the
    /// smallest numbers.
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

std::string SizeEntries(const ORVPixelImage& image) {
    return "/Type/XObject/Subtype/Image/Width " + std::to_string(image.GetWidth()) + "/Height " +
           std::to_string(image.GetHeight()) + "/BitsPerComponent 8";
}

/// Writes some of the four bytes of every pixel as an image.
void WriteChannels(PdfFile& file, unsigned int object, const ORVPixelImage& image,
                   std::span<const std::uint8_t> rgba, std::size_t firstChannel, std::size_t channels,
                   const std::string& entries) {
    file.BeginStream(object, SizeEntries(image) + entries + "/DecodeParms<</Predictor 15/Colors " +
                                 std::to_string(channels) + "/Columns " + std::to_string(image.GetWidth()) +
                                 ">>");
    const auto width = static_cast<std::size_t>(image.GetWidth());
    RowFilter filter(width * channels, channels);
    std::vector<std::uint8_t> row(width * channels);
    for (std::size_t start = 0; start < rgba.size(); start += width * 4) {
        const std::uint8_t* from = rgba.data() + start + firstChannel;
        for (std::uint8_t* to = row.data(); to != row.data() + row.size(); from += 4)
            for (std::size_t channel = 0; channel < channels; ++channel) *to++ = from[channel];
        file.AppendToStream(filter.Filter(row));
    }
    file.EndStream();
}

bool IsGrey(std::span<const std::uint8_t> rgba) {
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        if (rgba[i] != rgba[i + 1] || rgba[i] != rgba[i + 2]) return false;
    return true;
}

/// Writes a JPEG file as it is. @return false when its colours are not to be left to the reader
bool WriteJpeg(PdfFile& file, unsigned int object, const ORVPixelImage& image, const std::string& common) {
    const ORVJpegSource* jpeg = image.GetJpegSource();
    if (!jpeg) return false;
    std::string entries = SizeEntries(image) + common + "/Filter/DCTDecode";
    switch (jpeg->colourSpace) {
        case ORVJpegSource::ColourSpace::kGrey: entries += "/ColorSpace/DeviceGray"; break;
        case ORVJpegSource::ColourSpace::kYCbCr:
            entries += "/ColorSpace/DeviceRGB/DecodeParms<</ColorTransform 1>>";
            break;
        case ORVJpegSource::ColourSpace::kRGB:
            entries += "/ColorSpace/DeviceRGB/DecodeParms<</ColorTransform 0>>";
            break;
        case ORVJpegSource::ColourSpace::kCMYK:
        case ORVJpegSource::ColourSpace::kYCCK: return false;
    }
    file.WriteStream(object, entries, {reinterpret_cast<const char*>(jpeg->bytes.data()), jpeg->bytes.size()},
                     false);
    return true;
}

void WriteImage(PdfFile& file, unsigned int object, const ORVPixelImage& image, bool smooth) {
    const std::string common = smooth ? "/Interpolate true" : "";
    if (WriteJpeg(file, object, image, common)) return;
    const std::span<const std::uint8_t> rgba = image.GetPixels();
    if (rgba.empty()) {
        // Memory is spent: a transparent pixel stands in, so that the document stays sound.
        file.WriteObject(object,
                         "<</Type/XObject/Subtype/Form/BBox[0 0 1 1]/Length 0>>\nstream\n\nendstream");
        return;
    }
    std::string entries = common;
    if (image.HasAlpha()) {
        const unsigned int mask = file.Reserve();
        WriteChannels(file, mask, image, rgba, 3, 1, common + "/ColorSpace/DeviceGray");
        entries += "/SMask " + std::to_string(mask) + " 0 R";
    }
    if (IsGrey(rgba))
        WriteChannels(file, object, image, rgba, 0, 1, entries + "/ColorSpace/DeviceGray");
    else
        WriteChannels(file, object, image, rgba, 0, 3, entries + "/ColorSpace/DeviceRGB");
    image.ReleasePixels();
}

std::size_t PixelBytes(const ORVPixelImage& image) {
    return static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight()) * 4;
}

}  // namespace

unsigned int PdfImageTable::Find(const ORVPixelImage& image, bool smooth, PdfFile& file) {
    Entries& entries = smooth ? smooth_ : plain_;
    const auto found = entries.find(&image);
    if (found != entries.end()) return found->second.object;
    if (bytes_ > kKeptBytes) {
        smooth_.clear();
        plain_.clear();
        bytes_ = 0;
    }
    bytes_ += PixelBytes(image);
    const Entry entry{ORVRef<const ORVPixelImage>::Share(&image), smooth, file.Reserve()};
    entries.emplace(&image, entry);
    pending_.push_back(entry);
    return entry.object;
}

void PdfImageTable::WritePending(PdfFile& file) {
    for (const Entry& entry : pending_) WriteImage(file, entry.object, *entry.image, entry.smooth);
    pending_.clear();
}
