// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <exception>
#include <memory>
#include <span>

#include <png.h>

#include "platform/visualization/images/ORVPixelImage.h"
#include "platform/visualization/images/ORVPixelImageBuilder.h"
#include "platform/visualization/images/image_colours.h"
#include "platform/visualization/images/png_colours.h"

namespace {

constexpr std::size_t kSignatureSize = 8;

/// Input that libpng has not read yet.
struct Input {
    const std::uint8_t* next = nullptr;
    std::size_t left = 0;
};

void TakeBytes(png_structp png, png_bytep out, png_size_t count) {
    auto* input = static_cast<Input*>(png_get_io_ptr(png));
    if (count > input->left) png_error(png, "too short");
    std::memcpy(out, input->next, count);
    input->next += count;
    input->left -= count;
}

[[noreturn]] void LeaveOnError(png_structp png, png_const_charp message) {
    // libpng reports the kind of error only by message; the second one is zlib's.
    if (std::strcmp(message, "Out of memory") == 0 || std::strcmp(message, "insufficient memory") == 0)
        ORVPixelImageBuilder::NoteOutOfMemory();
    png_longjmp(png, 1);
}

void IgnoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

// Chunks that are skipped, so that damaged ones do no harm and large ones cost nothing. Colour chunks are
// read separately.
constexpr png_byte kIgnoredChunks[] =
    "bKGD\0cHRM\0eXIf\0gAMA\0hIST\0iCCP\0iTXt\0oFFs\0pCAL\0sBIT\0sCAL\0sPLT\0sRGB\0tEXt\0tIME\0zTXt";
constexpr int kIgnoredChunkCount = sizeof kIgnoredChunks / 5;
static_assert(sizeof kIgnoredChunks % 5 == 0);

/// A decoding. Members outlive libpng's longjmp; no local object with a destructor is created.
class PngReading {
public:
    explicit PngReading(std::span<const std::uint8_t> file) : file_(file), input_{file.data(), file.size()} {}
    PngReading(const PngReading&) = delete;
    PngReading& operator=(const PngReading&) = delete;
    ~PngReading() { png_destroy_read_struct(&png_, &info_, nullptr); }

    ORVPixelImage* Read() {
        if (input_.left < kSignatureSize || png_sig_cmp(input_.next, 0, kSignatureSize) != 0) return nullptr;
        png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, LeaveOnError, IgnoreWarning);
        info_ = png_ ? png_create_info_struct(png_) : nullptr;
        if (!info_) return ORVPixelImageBuilder::NoteOutOfMemory();
        return ReadPixels() && ConvertColours() ? builder_.Finish() : nullptr;
    }

private:
    bool ReadPixels() {
        if (setjmp(png_jmpbuf(png_))) return false;
        const std::size_t size = input_.left;
        png_set_read_fn(png_, &input_, TakeBytes);
        png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
        png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, kIgnoredChunks, kIgnoredChunkCount);
        png_read_info(png_, info_);

        const png_uint_32 width = png_get_image_width(png_, info_),
                          height = png_get_image_height(png_, info_);
        if (!ORVPixelImageBuilder::IsAllowed(width, height) || !CanHold(size, width, height)) return false;
        isGrey_ = (png_get_color_type(png_, info_) & PNG_COLOR_MASK_COLOR) == 0;
        const bool hasAlpha = (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) != 0 ||
                              png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
        ReadResolution();
        AskForRgba();
        const int passes = png_set_interlace_handling(png_);
        png_read_update_info(png_, info_);
        if (png_get_rowbytes(png_, info_) != std::size_t{4} * width || !builder_.SetSize(width, height))
            return false;
        for (int pass = 0; pass < passes; ++pass)
            for (png_uint_32 row = 0; row < height; ++row) png_read_row(png_, builder_.GetRow(row), nullptr);
        // Anything after the last row is ignored: texts, the end marker and trailing bytes.
        for (png_uint_32 row = 0; hasAlpha && row < height; ++row) builder_.NoteAlpha(row);
        return true;
    }

    /// @return false when out of memory
    bool ConvertColours() {
        try {
            const PngColours colours = ReadPngColours(file_, isGrey_);
            builder_.SetRemark(colours.remark);
            builder_.SetProfileSize(colours.profile.size());
            if (!colours.isDescribed) return true;
            std::unique_ptr<ORVColourConversion> conversion;
            const std::size_t pixels = builder_.GetPixelCount();
            const ORVColourStatus status = ORVCreateColourConversion(colours.description, pixels, conversion);
            if (status != ORVColourStatus::kOutOfMemory) {
                if (RemarkOn(status) != ORVImageRemark::kNone) builder_.SetRemark(RemarkOn(status));
                if (conversion) conversion->Convert(builder_.GetRow(0), pixels);
                return true;
            }
        } catch (const std::exception&) {  // out of memory
        }
        ORVPixelImageBuilder::NoteOutOfMemory();
        return false;
    }

    /// False when a file of `size` bytes cannot contain an image of the declared size.
    bool CanHold(std::size_t size, png_uint_32 width, png_uint_32 height) const {
        constexpr std::uint64_t kBestDeflateRatio = 1032;
        const std::uint64_t bits =
            std::uint64_t{png_get_bit_depth(png_, info_)} * png_get_channels(png_, info_) * width * height;
        return bits / 8 <= size * kBestDeflateRatio;
    }

    void ReadResolution() {
        png_uint_32 horizontal = 0, vertical = 0;
        int unit = PNG_RESOLUTION_UNKNOWN;
        if (png_get_pHYs(png_, info_, &horizontal, &vertical, &unit) && unit == PNG_RESOLUTION_METER)
            builder_.SetResolution(horizontal, vertical);
    }

    void AskForRgba() {
        png_set_expand(png_);
        png_set_scale_16(png_);
        png_set_gray_to_rgb(png_);
        png_set_add_alpha(png_, 255, PNG_FILLER_AFTER);
    }

    std::span<const std::uint8_t> file_;
    Input input_;
    bool isGrey_ = false;
    png_structp png_ = nullptr;
    png_infop info_ = nullptr;
    ORVPixelImageBuilder builder_;
};

ORVPixelImage* DecodePng(const void* bytes, std::size_t size) {
    return PngReading({static_cast<const std::uint8_t*>(bytes), size}).Read();
}

}  // namespace

ORVPixelImage* ReadMemoryPNGPixelImage(const void* bytes, std::size_t size, int /*flags*/) {
    return bytes ? ORVPixelImageBuilder::DecodeAndKeepSmaller(DecodePng, bytes, size) : nullptr;
}
