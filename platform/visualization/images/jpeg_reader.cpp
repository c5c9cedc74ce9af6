// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <exception>
#include <memory>
#include <utility>
#include <vector>

#include <jpeglib.h>

#include <jerror.h>

#include "platform/visualization/images/ORVPixelImage.h"
#include "platform/visualization/images/ORVPixelImageBuilder.h"
#include "platform/visualization/images/image_colours.h"
#include "platform/visualization/images/jpeg_segments.h"

namespace {

// Limits decoding time: a small file may contain many tiny scans; real files have about ten.
constexpr int kMostScans = 500;
constexpr JOCTET kEndOfImage[] = {0xFF, JPEG_EOI};

/// A decompression with libjpeg, with memory input and error handling by longjmp.
class JpegReading {
public:
    explicit JpegReading(std::span<const std::uint8_t> bytes) : bytes_(bytes) {
        jpeg_.err = jpeg_std_error(&errors_);
        errors_.error_exit = [](j_common_ptr jpeg) {
            if (jpeg->err->msg_code == JERR_OUT_OF_MEMORY) ORVPixelImageBuilder::NoteOutOfMemory();
            Leave(jpeg);
        };
        errors_.emit_message = [](j_common_ptr jpeg, int level) { NoteMessage(jpeg, level); };
        errors_.output_message = [](j_common_ptr) {};
        jpeg_.client_data = this;
    }
    JpegReading(const JpegReading&) = delete;
    JpegReading& operator=(const JpegReading&) = delete;
    ~JpegReading() {
        if (created_) jpeg_destroy_decompress(&jpeg_);
    }

    /// Decodes the file to its end to check that it is valid. Sets size, resolution and `source`.
    bool Check() {
        if (setjmp(jump_)) return false;
        if (!Open()) return false;
        if (!ORVPixelImageBuilder::IsAllowed(jpeg_.image_width, jpeg_.image_height)) return false;
        if (!DescribeSource()) return false;

        // At an eighth of the size, all data are decoded but few pixels are computed.
        jpeg_.scale_num = 1;
        jpeg_.scale_denom = 8;
        jpeg_.do_fancy_upsampling = FALSE;
        jpeg_start_decompress(&jpeg_);
        JSAMPARRAY row = (*jpeg_.mem->alloc_sarray)(Common(), JPOOL_IMAGE, RowSamples(), 1);
        while (jpeg_.output_scanline < jpeg_.output_height) jpeg_read_scanlines(&jpeg_, row, 1);
        if (cutOff_ && !IsComplete()) return false;
        jpeg_finish_decompress(&jpeg_);
        usedBytes_ = cutOff_ ? bytes_.size() : bytes_.size() - jpeg_.src->bytes_in_buffer;
        return true;
    }

    /// Decodes to RGBA, with the orientation applied.
    /// @param conversion  from the file's colours; null for sRGB
    bool Decode(const ORVJpegSource& source, const ORVColourConversion* conversion, std::uint8_t* rgba) {
        if (setjmp(jump_)) return false;
        if (!Open() || jpeg_.image_width != static_cast<JDIMENSION>(source.storedWidth) ||
            jpeg_.image_height != static_cast<JDIMENSION>(source.storedHeight))
            return false;
        jpeg_.out_color_space = source.componentCount == 4 ? JCS_CMYK : JCS_EXT_RGBA;
        jpeg_start_decompress(&jpeg_);
        const std::size_t rowBytes = std::size_t{4} * jpeg_.image_width;
        const auto read = [&](JSAMPROW row) {
            jpeg_read_scanlines(&jpeg_, &row, 1);
            if (conversion)
                conversion->Convert(row, jpeg_.image_width);
            else if (source.componentCount == 4)
                TurnCmykToRgba(row, rowBytes, source.inverted);
        };
        if (source.orientation == 1) {
            while (jpeg_.output_scanline < jpeg_.output_height) read(rgba + jpeg_.output_scanline * rowBytes);
            return true;
        }
        // Several rows at a time: when columns become rows, writing single rows would touch a new cache line
        // for every pixel.
        constexpr JDIMENSION kRows = 16;
        JSAMPARRAY rows =
            (*jpeg_.mem->alloc_sarray)(Common(), JPOOL_IMAGE, static_cast<JDIMENSION>(rowBytes), kRows);
        while (jpeg_.output_scanline < jpeg_.output_height) {
            const JDIMENSION first = jpeg_.output_scanline,
                             count = std::min(kRows, jpeg_.output_height - first);
            for (JDIMENSION i = 0; i < count; ++i) read(rows[i]);
            PlaceTurned(source, rows, first, count, rgba);
        }
        return true;
    }

    const ORVJpegSource& GetSource() const { return source_; }

    void WriteResolution(ORVPixelImageBuilder& builder) const {
        constexpr double kInchesAMetre = 100.0 / 2.54, kCentimetresAMetre = 100.0;
        if (!jpeg_.saw_JFIF_marker || jpeg_.density_unit == 0 || jpeg_.density_unit > 2) return;
        const double factor = jpeg_.density_unit == 1 ? kInchesAMetre : kCentimetresAMetre;
        builder.SetResolution(jpeg_.X_density * factor, jpeg_.Y_density * factor);
    }

    /// The file from its first to its last marker.
    std::vector<std::uint8_t> CopyFile() const {
        std::vector<std::uint8_t> file(bytes_.begin(),
                                       bytes_.begin() + static_cast<std::ptrdiff_t>(usedBytes_));
        if (cutOff_) {  // the end marker is missing or incomplete
            if (!file.empty() && file.back() == kEndOfImage[0]) file.pop_back();
            file.insert(file.end(), std::begin(kEndOfImage), std::end(kEndOfImage));
        }
        return file;
    }

private:
    static JpegReading& Of(j_common_ptr jpeg) { return *static_cast<JpegReading*>(jpeg->client_data); }
    static JpegReading& Of(j_decompress_ptr jpeg) { return *static_cast<JpegReading*>(jpeg->client_data); }
    j_common_ptr Common() { return reinterpret_cast<j_common_ptr>(&jpeg_); }

    [[noreturn]] static void Leave(j_common_ptr jpeg) { std::longjmp(Of(jpeg).jump_, 1); }

    static void NoteMessage(j_common_ptr jpeg, int level) {
        if (level >= 0) return;  // a trace message
        switch (jpeg->err->msg_code) {
            case JWRN_JPEG_EOF:           // see FeedEndOfImage
            case JWRN_EXTRANEOUS_DATA:    // surplus bytes between markers
            case JWRN_ADOBE_XFORM:        // an unknown colour transform; the usual one is assumed
            case JWRN_JFIF_MAJOR:         // an unknown version of the header
            case JWRN_NOT_SEQUENTIAL:     // irrelevant parameters of the only scan
            case JWRN_BOGUS_PROGRESSION:  // an unusual order of scans, which can be decoded
                return;
            default: Leave(jpeg);
        }
    }

    static boolean FeedEndOfImage(j_decompress_ptr jpeg) {
        Of(jpeg).cutOff_ = true;
        jpeg->src->next_input_byte = kEndOfImage;
        jpeg->src->bytes_in_buffer = sizeof kEndOfImage;
        return TRUE;
    }

    static void Skip(j_decompress_ptr jpeg, long count) {
        if (count <= 0) return;
        const std::size_t skipped = std::min(static_cast<std::size_t>(count), jpeg->src->bytes_in_buffer);
        jpeg->src->next_input_byte += skipped;
        jpeg->src->bytes_in_buffer -= skipped;
    }

    static void LimitScans(j_common_ptr jpeg) {
        if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > kMostScans) Leave(jpeg);
    }

    bool Open() {
        jpeg_create_decompress(&jpeg_);
        created_ = true;
        input_.next_input_byte = bytes_.data();
        input_.bytes_in_buffer = bytes_.size();
        input_.init_source = [](j_decompress_ptr) {};
        input_.fill_input_buffer = FeedEndOfImage;
        input_.skip_input_data = Skip;
        input_.resync_to_restart = [](j_decompress_ptr jpeg, int) -> boolean {
            Leave(reinterpret_cast<j_common_ptr>(jpeg));  // a restart marker is missing
        };
        input_.term_source = [](j_decompress_ptr) {};
        jpeg_.src = &input_;
        progress_.progress_monitor = LimitScans;
        jpeg_.progress = &progress_;
        return jpeg_read_header(&jpeg_, TRUE) == JPEG_HEADER_OK;
    }

    bool DescribeSource() {
        using ColourSpace = ORVJpegSource::ColourSpace;
        switch (jpeg_.jpeg_color_space) {
            case JCS_GRAYSCALE: source_.colourSpace = ColourSpace::kGrey; break;
            case JCS_YCbCr: source_.colourSpace = ColourSpace::kYCbCr; break;
            case JCS_RGB: source_.colourSpace = ColourSpace::kRGB; break;
            case JCS_CMYK: source_.colourSpace = ColourSpace::kCMYK; break;
            case JCS_YCCK: source_.colourSpace = ColourSpace::kYCCK; break;
            default: return false;
        }
        source_.componentCount = jpeg_.num_components;
        source_.inverted = jpeg_.num_components == 4 && jpeg_.saw_Adobe_marker;
        source_.storedWidth = static_cast<int>(jpeg_.image_width);
        source_.storedHeight = static_cast<int>(jpeg_.image_height);
        return true;
    }

    JDIMENSION RowSamples() const {
        return jpeg_.output_width * static_cast<JDIMENSION>(jpeg_.output_components);
    }

    /// True when all scans are present although the end marker is missing: for a sequential file, when its
    /// last row has been decoded; for a progressive one, when all bits of every coefficient are known.
    bool IsComplete() const {
        if (!jpeg_.progressive_mode || !jpeg_.coef_bits) return true;
        for (int component = 0; component < jpeg_.num_components; ++component)
            for (int bit : jpeg_.coef_bits[component])
                if (bit != 0) return false;
        return true;
    }

    static void TurnCmykToRgba(std::uint8_t* pixel, std::size_t rowBytes, bool inverted) {
        const unsigned int flip = inverted ? 0 : 255;  // converts amounts of ink to amounts of light
        for (const std::uint8_t* end = pixel + rowBytes; pixel != end; pixel += 4) {
            const unsigned int light = pixel[3] ^ flip;
            for (int channel = 0; channel < 3; ++channel)
                pixel[channel] = static_cast<std::uint8_t>(((pixel[channel] ^ flip) * light + 127) / 255);
            pixel[3] = 255;
        }
    }

    /// Copies rows of the file to their oriented positions.
    static void PlaceTurned(const ORVJpegSource& source, JSAMPARRAY rows, JDIMENSION first, JDIMENSION count,
                            std::uint8_t* rgba) {
        constexpr std::size_t kPixel = 4;
        const std::ptrdiff_t w = source.storedWidth, h = source.storedHeight;
        // Position of the file's first pixel, and the distances to the next pixel in its row and in its
        // column.
        struct Way {
            std::ptrdiff_t start, right, down;
        };
        const Way ways[] = {
            {0, 1, w}, {w - 1, -1, w}, {w * h - 1, -1, -w}, {w * h - w, 1, -w},
            {0, h, 1}, {h - 1, h, -1}, {w * h - 1, -h, -1}, {w * h - h, -h, 1},
        };
        const Way& way = ways[source.orientation - 1];
        for (std::ptrdiff_t x = 0; x < w; ++x) {
            std::ptrdiff_t to = way.start + x * way.right + static_cast<std::ptrdiff_t>(first) * way.down;
            for (JDIMENSION i = 0; i < count; ++i, to += way.down)
                std::memcpy(rgba + to * static_cast<std::ptrdiff_t>(kPixel),
                            rows[i] + x * static_cast<std::ptrdiff_t>(kPixel), kPixel);
        }
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t usedBytes_ = 0;
    bool created_ = false;
    bool cutOff_ = false;  // the data ended before the end marker
    std::jmp_buf jump_ = {};
    jpeg_decompress_struct jpeg_ = {};
    jpeg_error_mgr errors_ = {};
    jpeg_source_mgr input_ = {};
    jpeg_progress_mgr progress_ = {};
    ORVJpegSource source_;
};

ORVColourDescription Describe(const ORVJpegSource& source, std::span<const std::uint8_t> profile) {
    using Space = ORVColourDescription::Space;
    ORVColourDescription description;
    if (source.componentCount == 1)
        description.space = Space::kGrey;
    else if (source.componentCount == 4)
        description.space = source.inverted ? Space::kNoInk : Space::kCMYK;
    description.profile = profile;
    return description;
}

ORVColourStatus CreateConversion(const ORVJpegSource& source, std::span<const std::uint8_t> profile,
                                 std::unique_ptr<ORVColourConversion>& conversion) {
    const std::size_t pixels =
        static_cast<std::size_t>(source.storedWidth) * static_cast<std::size_t>(source.storedHeight);
    return ORVCreateColourConversion(Describe(source, profile), pixels, conversion);
}

}  // namespace

bool DecodeJpegPixels(const ORVJpegSource& source, bool isConverted, std::uint8_t* rgba) {
    try {
        std::unique_ptr<ORVColourConversion> conversion;
        if (isConverted) {
            CreateConversion(source, ReadJpegSegments(source.bytes).profile, conversion);
            if (!conversion) return false;
        }
        return JpegReading(source.bytes).Decode(source, conversion.get(), rgba);
    } catch (const std::exception&) {
        return false;
    }
}

ORVPixelImage* ReadMemoryJPEGPixelImage(const void* bytes, std::size_t size, int /*flags*/) {
    ORVPixelImageBuilder::BeginReading();
    if (!bytes) return nullptr;
    JpegReading reading({static_cast<const std::uint8_t*>(bytes), size});
    if (!reading.Check()) return nullptr;
    try {
        ORVPixelImageBuilder builder;
        reading.WriteResolution(builder);
        const JpegSegments segments = ReadJpegSegments({static_cast<const std::uint8_t*>(bytes), size});
        ORVJpegSource source = reading.GetSource();
        source.orientation = segments.orientation;
        builder.SetProfileSize(segments.profile.size());
        std::unique_ptr<ORVColourConversion> conversion;
        if (segments.isProfileBroken) {
            builder.SetRemark(ORVImageRemark::kBrokenProfile);
        } else if (!segments.profile.empty()) {
            const ORVColourStatus status = CreateConversion(source, segments.profile, conversion);
            if (status == ORVColourStatus::kOutOfMemory) return ORVPixelImageBuilder::NoteOutOfMemory();
            builder.SetRemark(RemarkOn(status));
        }
        return builder.FinishJpeg(reading.CopyFile(), source, conversion != nullptr);
    } catch (const std::exception&) {
        return ORVPixelImageBuilder::NoteOutOfMemory();
    }
}
