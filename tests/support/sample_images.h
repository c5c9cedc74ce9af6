// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

/// Small image files of uniform red, generated on the fly.
std::string SamplePng(int width, int height);
std::string SampleJpeg(int width, int height);
/// A JPEG of the given colours, as far as lossy compression preserves them.
std::string SampleJpegOf(int width, int height,
                         const std::function<std::array<unsigned char, 3>(int x, int y)>& colour);
std::string SampleBmp(int width, int height);

/// Inserts a chunk after the header of a PNG.
std::string WithPngChunk(std::string png, std::string_view type, std::string_view data);
/// Inserts a segment after the first marker of a JPEG.
std::string WithJpegSegment(std::string jpeg, unsigned char marker, std::string_view data);
/// Exif data, without the identifying prefix, with an image orientation (1 to 8).
std::string SampleExif(int orientation, bool isLittleEndian = true);

/// Base64 of the bytes, padded with "=".
std::string ToBase64(std::string_view bytes);
