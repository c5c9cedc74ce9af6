#include "generators/png/png_writer.h"

#include <png.h>

#include <cmath>
#include <csetjmp>
#include <vector>

#include "generators/common/ORVOutput.h"

namespace {

struct Target {
    ORVOutput& output;
    std::string& error;
};

void Write(png_structp png, png_bytep bytes, size_t size) {
    const auto* target = static_cast<Target*>(png_get_io_ptr(png));
    if (target->output.Write(bytes, size) != 1) png_error(png, "");
}

void Flush(png_structp /*png*/) {}

void Report(png_structp png, png_const_charp message) {
    static_cast<Target*>(png_get_error_ptr(png))->error = message;
    png_longjmp(png, 1);
}

void Ignore(png_structp /*png*/, png_const_charp /*message*/) {}

/// The part between set-up and clean-up, which errors leave by a jump: nothing here needs destruction.
bool WriteImage(png_structp png, png_infop info, const unsigned char* pixels, int width, int height,
                std::size_t stride, double dotsPerInch, std::uint8_t* row) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    // The library's own limits are for files that it reads.
    png_set_user_limits(png, 0x7FFFFFFF, 0x7FFFFFFF);
    png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), 8,
                 PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    const auto dotsPerMetre = static_cast<png_uint_32>(std::lround(dotsPerInch / 0.0254));
    png_set_pHYs(png, info, dotsPerMetre, dotsPerMetre, PNG_RESOLUTION_METER);
    // Drawings are even areas, which plain rows and differences to the row above compress well and fast.
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE | PNG_FILTER_UP);
    png_set_compression_level(png, 4);
    png_write_info(png, info);
    for (int y = 0; y < height; ++y) {
        const auto* from =
            reinterpret_cast<const std::uint32_t*>(pixels + static_cast<std::size_t>(y) * stride);
        std::uint8_t* to = row;
        for (int x = 0; x < width; ++x) {
            *to++ = static_cast<std::uint8_t>(from[x] >> 16U);
            *to++ = static_cast<std::uint8_t>(from[x] >> 8U);
            *to++ = static_cast<std::uint8_t>(from[x]);
        }
        png_write_row(png, row);
    }
    png_write_end(png, info);
    return true;
}

}  // namespace

int WritePng(ORVOutput& output, const unsigned char* pixels, int width, int height, std::size_t stride,
             double dotsPerInch, std::string& error) {
    Target target{output, error};
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &target, Report, Ignore);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    if (!info) {
        png_destroy_write_struct(&png, nullptr);
        error = "memory is spent";
        return 0;
    }
    png_set_write_fn(png, &target, Write, Flush);
    std::vector<std::uint8_t> row(static_cast<std::size_t>(width) * 3);
    const bool written = WriteImage(png, info, pixels, width, height, stride, dotsPerInch, row.data());
    png_destroy_write_struct(&png, &info);
    return written ? 1 : 0;
}
