// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>

/// Files of small images, made anew: a red picture of that size.
std::string SamplePng(int width, int height);
std::string SampleJpeg(int width, int height);
/// A JPEG of these colours, which are kept as well as the format can.
std::string SampleJpegOf(int width, int height,
                         const std::function<std::array<unsigned char, 3>(int x, int y)>& colour);
std::string SampleBmp(int width, int height);

/// The same PNG with a chunk more, behind its header.
std::string WithPngChunk(std::string png, std::string_view type, std::string_view data);
/// The same JPEG with a segment more, behind its first marker.
std::string WithJpegSegment(std::string jpeg, unsigned char marker, std::string_view data);
/// Data in the form of Exif, without the name in front, that say how an image lies (1 to 8).
std::string SampleExif(int orientation, bool isLittleEndian = true);

/// Base64 of some bytes, padded with "=".
std::string ToBase64(std::string_view bytes);
