#pragma once

#include <string>
#include <string_view>

/// Files of small images, made anew: a red picture of that size.
std::string SamplePng(int width, int height);
std::string SampleJpeg(int width, int height);
std::string SampleBmp(int width, int height);

/// Base64 of some bytes, padded with "=".
std::string ToBase64(std::string_view bytes);
