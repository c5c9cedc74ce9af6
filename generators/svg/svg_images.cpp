// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_images.h"

#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstdint>
#include <new>
#include <span>
#include <vector>

#include "generators/svg/svg_writer.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

void Write(png_structp png, png_bytep bytes, size_t size) {
    try {
        static_cast<SvgWriter*>(png_get_io_ptr(png))->PutBase64({bytes, size});
        return;
    } catch (const std::bad_alloc&) {  // exceptions must not pass through the library
    }
    png_error(png, "Out of memory");
}

void Flush(png_structp /*png*/) {}
void Fail(png_structp png, png_const_charp /*message*/) { png_longjmp(png, 1); }
void Ignore(png_structp /*png*/, png_const_charp /*message*/) {}

bool IsGrey(std::span<const std::uint8_t> rgba) {
    for (std::size_t i = 0; i < rgba.size(); i += 4)
        if (rgba[i] != rgba[i + 1] || rgba[i] != rgba[i + 2]) return false;
    return true;
}

/// The part between set-up and clean-up. Errors leave it by longjmp, so no objects here may need destruction.
bool WriteRows(png_structp png, png_infop info, const ORVPixelImage& image,
               std::span<const std::uint8_t> rgba, bool isGrey, std::uint8_t* row) {
    if (setjmp(png_jmpbuf(png)) != 0) return false;
    // The library's default limits are meant for reading.
    png_set_user_limits(png, 0x7FFFFFFF, 0x7FFFFFFF);
    const bool hasAlpha = image.HasAlpha();
    const int type =
        (isGrey ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_RGB) | (hasAlpha ? PNG_COLOR_MASK_ALPHA : 0);
    png_set_IHDR(png, info, static_cast<png_uint_32>(image.GetWidth()),
                 static_cast<png_uint_32>(image.GetHeight()), 8, type, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    const double horizontal = image.GetHorizontalResolution(), vertical = image.GetVerticalResolution();
    constexpr double kGreatest = 1e9;
    if (horizontal >= 1.0 && horizontal < kGreatest && vertical >= 1.0 && vertical < kGreatest)
        png_set_pHYs(png, info, static_cast<png_uint_32>(std::lround(horizontal)),
                     static_cast<png_uint_32>(std::lround(vertical)), PNG_RESOLUTION_METER);
    png_write_info(png, info);
    const std::size_t rowBytes = static_cast<std::size_t>(image.GetWidth()) * 4;
    for (std::size_t start = 0; start < rgba.size(); start += rowBytes) {
        std::uint8_t* to = row;
        for (std::size_t i = start; i < start + rowBytes; i += 4) {
            *to++ = rgba[i];
            if (!isGrey) {
                *to++ = rgba[i + 1];
                *to++ = rgba[i + 2];
            }
            if (hasAlpha) *to++ = rgba[i + 3];
        }
        png_write_row(png, row);
    }
    png_write_end(png, info);
    return true;
}

bool PutPng(SvgWriter& writer, const ORVPixelImage& image) {
    const std::span<const std::uint8_t> rgba = image.GetPixels();
    if (rgba.empty()) return false;
    std::vector<std::uint8_t> row(static_cast<std::size_t>(image.GetWidth()) * 4);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, Ignore);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    bool isWritten = false;
    if (info) {
        png_set_write_fn(png, &writer, Write, Flush);
        isWritten = WriteRows(png, info, image, rgba, IsGrey(rgba), row.data());
    }
    png_destroy_write_struct(&png, &info);
    image.ReleasePixels();
    return isWritten;
}

}  // namespace

bool PutImageAddress(SvgWriter& writer, const ORVPixelImage& image) {
    const ORVJpegSource* jpeg = image.GetJpegSource();
    // Readers differ in how they interpret CMYK values.
    if (jpeg && jpeg->colourSpace != ORVJpegSource::ColourSpace::kCMYK &&
        jpeg->colourSpace != ORVJpegSource::ColourSpace::kYCCK) {
        writer.Put("data:image/jpeg;base64,");
        writer.PutBase64(jpeg->bytes);
        writer.PutEndOfBase64();
        return true;
    }
    writer.Put("data:image/png;base64,");
    const bool isWritten = PutPng(writer, image);
    writer.PutEndOfBase64();
    return isWritten;
}
