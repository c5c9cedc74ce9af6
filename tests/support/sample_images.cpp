// SPDX-License-Identifier: Apache-2.0
#include "tests/support/sample_images.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <jpeglib.h>

namespace {

std::uint32_t Crc(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFFU;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1U) ^ ((crc & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return ~crc;
}

std::uint32_t Adler(std::string_view bytes) {
    std::uint32_t a = 1, b = 0;
    for (const char c : bytes) {
        a = (a + static_cast<unsigned char>(c)) % 65521U;
        b = (b + a) % 65521U;
    }
    return b << 16U | a;
}

void AppendBigEndian(std::string& out, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        out += static_cast<char>(value >> static_cast<unsigned>(shift) & 0xFFU);
}

void AppendLittleEndian(std::string& out, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>(value >> (8U * static_cast<unsigned>(i)) & 0xFFU);
}

void AppendChunk(std::string& png, std::string_view type, std::string_view data) {
    AppendBigEndian(png, static_cast<std::uint32_t>(data.size()));
    const std::string body = std::string(type).append(data);
    png += body;
    AppendBigEndian(png, Crc(body));
}

}  // namespace

std::string SamplePng(int width, int height) {
    std::string rows;
    for (int y = 0; y < height; ++y) {
        rows += '\0';  // no filter
        for (int x = 0; x < width; ++x) rows.append("\xFF\0\0", 3);
    }
    std::string header;
    AppendBigEndian(header, static_cast<std::uint32_t>(width));
    AppendBigEndian(header, static_cast<std::uint32_t>(height));
    header.append("\x08\x02\0\0\0", 5);  // eight bits, RGB

    // A single stored block of up to 65535 bytes.
    std::string data("\x78\x01\x01", 3);
    AppendLittleEndian(data, static_cast<std::uint32_t>(rows.size()), 2);
    AppendLittleEndian(data, ~static_cast<std::uint32_t>(rows.size()), 2);
    data += rows;
    AppendBigEndian(data, Adler(rows));

    std::string png("\x89PNG\r\n\x1A\n", 8);
    AppendChunk(png, "IHDR", header);
    AppendChunk(png, "IDAT", data);
    AppendChunk(png, "IEND", {});
    return png;
}

std::string WithPngChunk(std::string png, std::string_view type, std::string_view data) {
    constexpr std::size_t kEndOfHeader = 33;
    std::string chunk;
    AppendChunk(chunk, type, data);
    return png.insert(kEndOfHeader, chunk);
}

std::string WithJpegSegment(std::string jpeg, unsigned char marker, std::string_view data) {
    const std::size_t size = data.size() + 2;
    std::string segment{'\xFF', static_cast<char>(marker), static_cast<char>(size >> 8U),
                        static_cast<char>(size)};
    return jpeg.insert(2, segment.append(data));
}

std::string SampleExif(int orientation, bool isLittleEndian) {
    std::string exif = isLittleEndian ? "II" : "MM";
    const auto add = [&](std::uint32_t value, int bytes) {
        std::string text;
        AppendLittleEndian(text, value, bytes);
        exif += isLittleEndian ? text : std::string(text.rbegin(), text.rend());
    };
    add(42, 2);
    add(8, 4);       // offset of the directory
    add(2, 2);       // entries
    add(0x010F, 2);  // camera maker; ignored
    add(2, 2);
    add(4, 4);
    exif += "abc";
    exif += '\0';
    add(0x0112, 2);  // orientation, a short
    add(3, 2);
    add(1, 4);
    add(static_cast<std::uint32_t>(orientation), 2);
    add(0, 2);
    add(0, 4);  // no directory follows
    return exif;
}

std::string SampleBmp(int width, int height) {
    const std::size_t rowBytes = (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
    const std::size_t pixelBytes = rowBytes * static_cast<std::size_t>(height);
    std::string bmp("BM");
    AppendLittleEndian(bmp, static_cast<std::uint32_t>(54 + pixelBytes), 4);
    AppendLittleEndian(bmp, 0, 4);
    AppendLittleEndian(bmp, 54, 4);
    AppendLittleEndian(bmp, 40, 4);
    AppendLittleEndian(bmp, static_cast<std::uint32_t>(width), 4);
    AppendLittleEndian(bmp, static_cast<std::uint32_t>(height), 4);
    AppendLittleEndian(bmp, 1, 2);
    AppendLittleEndian(bmp, 24, 2);
    AppendLittleEndian(bmp, 0, 4);
    AppendLittleEndian(bmp, static_cast<std::uint32_t>(pixelBytes), 4);
    AppendLittleEndian(bmp, 2835, 4);
    AppendLittleEndian(bmp, 2835, 4);
    AppendLittleEndian(bmp, 0, 8);
    for (int y = 0; y < height; ++y) {
        std::string row;
        for (int x = 0; x < width; ++x) row.append("\0\0\xFF", 3);
        row.resize(rowBytes);
        bmp += row;
    }
    return bmp;
}

std::string SampleJpegOf(int width, int height,
                         const std::function<std::array<unsigned char, 3>(int x, int y)>& colour) {
    jpeg_compress_struct jpeg{};
    jpeg_error_mgr errors{};
    jpeg.err = jpeg_std_error(&errors);
    jpeg_create_compress(&jpeg);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&jpeg, &memory, &size);
    jpeg.image_width = static_cast<JDIMENSION>(width);
    jpeg.image_height = static_cast<JDIMENSION>(height);
    jpeg.input_components = 3;
    jpeg.in_color_space = JCS_RGB;
    jpeg_set_defaults(&jpeg);
    jpeg_set_quality(&jpeg, 100, TRUE);
    jpeg_start_compress(&jpeg, TRUE);
    std::vector<unsigned char> row;
    while (jpeg.next_scanline < jpeg.image_height) {
        row.clear();
        for (int x = 0; x < width; ++x)
            for (const unsigned char sample : colour(x, static_cast<int>(jpeg.next_scanline)))
                row.push_back(sample);
        JSAMPROW rows[] = {row.data()};
        jpeg_write_scanlines(&jpeg, rows, 1);
    }
    jpeg_finish_compress(&jpeg);
    jpeg_destroy_compress(&jpeg);
    std::string bytes(reinterpret_cast<const char*>(memory), size);
    std::free(memory);
    return bytes;
}

std::string SampleJpeg(int width, int height) {
    return SampleJpegOf(width, height, [](int, int) { return std::array<unsigned char, 3>{255, 0, 0}; });
}

std::string ToBase64(std::string_view bytes) {
    constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t bits = 0;
        for (std::size_t k = 0; k < 3; ++k)
            bits = bits << 8U | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += i + k <= bytes.size() ? kAlphabet[bits >> (18 - 6 * k) & 63U] : '=';
    }
    return text;
}
