#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class ORVOutput;

/// Writes an opaque picture as PNG, row by row.
/// @param pixels  words of 0x00RRGGBB, `stride` bytes a row
/// @param dotsPerInch  resolution that the file states
/// @param error   what went wrong, unless it was the output
/// @return 1, or 0 when it failed
[[nodiscard]] int WritePng(ORVOutput& output, const unsigned char* pixels, int width, int height,
                           std::size_t stride, double dotsPerInch, std::string& error);
