// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/visualization/written_images.h"

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>
#include <png.h>

namespace {

int ChannelCount(int colourType) {
    switch (colourType) {
        case PNG_COLOR_TYPE_RGB: return 3;
        case PNG_COLOR_TYPE_RGB_ALPHA: return 4;
        case PNG_COLOR_TYPE_GRAY_ALPHA: return 2;
        default: return 1;
    }
}

void PutSample(ByteList& row, std::size_t index, int depth, unsigned value) {
    if (depth == 16) {
        row[index * 2] = static_cast<std::uint8_t>(value >> 8);
        row[index * 2 + 1] = static_cast<std::uint8_t>(value);
    } else {
        const std::size_t bit = index * static_cast<std::size_t>(depth);
        row[bit / 8] |= static_cast<std::uint8_t>(value << (8 - depth - static_cast<int>(bit % 8)));
    }
}

}  // namespace

ByteList WritePng(const PngToWrite& image) {
    ByteList out;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_set_write_fn(
        png, &out,
        [](png_structp writer, png_bytep bytes, png_size_t count) {
            auto& list = *static_cast<ByteList*>(png_get_io_ptr(writer));
            list.insert(list.end(), bytes, bytes + count);
        },
        [](png_structp) {});
    const auto width = static_cast<png_uint_32>(image.width), height = static_cast<png_uint_32>(image.height);
    png_set_IHDR(png, info, width, height, image.depth, image.colourType,
                 image.interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    std::vector<png_color> palette;
    for (std::size_t i = 0; i + 2 < image.palette.size(); i += 3)
        palette.push_back({image.palette[i], image.palette[i + 1], image.palette[i + 2]});
    if (!palette.empty()) png_set_PLTE(png, info, palette.data(), static_cast<int>(palette.size()));
    if (!image.paletteAlpha.empty())
        png_set_tRNS(png, info, image.paletteAlpha.data(), static_cast<int>(image.paletteAlpha.size()),
                     nullptr);
    if (image.transparentGrey >= 0) {
        png_color_16 grey = {};
        grey.gray = static_cast<png_uint_16>(image.transparentGrey);
        png_set_tRNS(png, info, nullptr, 0, &grey);
    }
    if (image.pixelsPerMetre)
        png_set_pHYs(png, info, image.pixelsPerMetre, image.pixelsPerMetre, PNG_RESOLUTION_METER);
    png_write_info(png, info);
    const int passes = png_set_interlace_handling(png);
    const int channels = ChannelCount(image.colourType);
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < image.height; ++y) {
            ByteList row(static_cast<std::size_t>((image.width * channels * image.depth + 7) / 8));
            for (int x = 0; x < image.width; ++x)
                for (int channel = 0; channel < channels; ++channel)
                    PutSample(row, static_cast<std::size_t>(x * channels + channel), image.depth,
                              image.sample(x, y, channel));
            png_write_row(png, row.data());
        }
    }
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return out;
}

ByteList WriteJpeg(const JpegToWrite& image) {
    jpeg_compress_struct jpeg = {};
    jpeg_error_mgr errors = {};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &memory, &size);
    jpeg.image_width = static_cast<JDIMENSION>(image.width);
    jpeg.image_height = static_cast<JDIMENSION>(image.height);
    jpeg.input_components = image.components;
    jpeg.in_color_space = static_cast<J_COLOR_SPACE>(image.inputSpace);
    jpeg_set_defaults(&jpeg);
    jpeg_set_colorspace(&jpeg, static_cast<J_COLOR_SPACE>(image.storedSpace));
    jpeg_set_quality(&jpeg, 100, TRUE);
    for (int i = 0; i < jpeg.num_components; ++i)
        jpeg.comp_info[i].h_samp_factor = jpeg.comp_info[i].v_samp_factor = 1;
    jpeg.write_Adobe_marker = image.adobeMarker ? TRUE : FALSE;
    jpeg.write_JFIF_header = image.dotsPerInch ? TRUE : FALSE;
    jpeg.density_unit = 1;
    jpeg.X_density = jpeg.Y_density = static_cast<UINT16>(image.dotsPerInch);
    jpeg.restart_interval = image.restartInterval;
    if (image.progressive) jpeg_simple_progression(&jpeg);
    jpeg_start_compress(&jpeg, TRUE);
    ByteList samples = image.samples;
    const auto rowSize = static_cast<std::size_t>(image.width * image.components);
    while (jpeg.next_scanline < jpeg.image_height) {
        JSAMPROW row = samples.data() + jpeg.next_scanline * rowSize;
        jpeg_write_scanlines(&jpeg, &row, 1);
    }
    jpeg_finish_compress(&jpeg);
    ByteList out(memory, memory + size);
    jpeg_destroy_compress(&jpeg);
    std::free(memory);
    return out;
}

BmpToWrite& BmpToWrite::U8(unsigned value) {
    header_.push_back(static_cast<std::uint8_t>(value));
    return *this;
}

BmpToWrite& BmpToWrite::U16(unsigned value) { return U8(value & 255).U8(value >> 8 & 255); }

BmpToWrite& BmpToWrite::U32(std::uint32_t value) { return U16(value & 0xFFFF).U16(value >> 16); }

BmpToWrite& BmpToWrite::Append(const ByteList& bytes) {
    header_.insert(header_.end(), bytes.begin(), bytes.end());
    return *this;
}

ByteList BmpToWrite::With(const ByteList& pixels) const {
    constexpr std::size_t kFileHeaderSize = 14;
    const std::size_t offset = kFileHeaderSize + header_.size();
    BmpToWrite file;
    file.Append({'B', 'M'}).U32(static_cast<std::uint32_t>(offset + pixels.size())).U32(0);
    file.U32(static_cast<std::uint32_t>(offset)).Append(header_).Append(pixels);
    return file.header_;
}

BmpToWrite BmpToWrite::Info(int width, int height, unsigned bits, std::uint32_t compression,
                            std::uint32_t colours) {
    BmpToWrite bmp;
    bmp.U32(40)
        .U32(static_cast<std::uint32_t>(width))
        .U32(static_cast<std::uint32_t>(height))
        .U16(1)
        .U16(bits);
    bmp.U32(compression).U32(0).U32(2835).U32(3780).U32(colours).U32(0);
    return bmp;
}

Rgba PixelsOf(const ORVRef<ORVPixelImage>& image) {
    if (!image) return {};
    const auto pixels = image->GetPixels();
    return {pixels.begin(), pixels.end()};
}

ORVRef<ORVPixelImage> ReadPng(const ByteList& bytes) {
    return ORVRef<ORVPixelImage>(ReadMemoryPNGPixelImage(bytes.data(), bytes.size(), 0));
}

ORVRef<ORVPixelImage> ReadJpeg(const ByteList& bytes) {
    return ORVRef<ORVPixelImage>(ReadMemoryJPEGPixelImage(bytes.data(), bytes.size(), 0));
}

ORVRef<ORVPixelImage> ReadBmp(const ByteList& bytes) {
    return ORVRef<ORVPixelImage>(ReadMemBMPPixelImage(bytes.data(), bytes.size(), 0));
}
