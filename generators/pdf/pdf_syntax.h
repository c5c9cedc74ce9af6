// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"

/// Digits after the point of lengths that nothing else says the digits of.
inline constexpr int kPdfPlaces = 4;
/// Significant digits of factors.
inline constexpr int kPdfFactorDigits = 9;

/// Appends the six numbers of a map, each with a blank behind it.
void AppendPdfMap(std::string& text, const ORVMathAffine2D& map);
/// Appends a text string, in the format's Unicode form unless it is plain ASCII. What is no UTF-8 becomes
/// U+FFFD.
void AppendPdfText(std::string& text, std::string_view utf8);
/// Appends UTF-8 as the hexadecimal digits of UTF-16.
void AppendHexUtf16(std::string& text, std::string_view utf8);
/// Appends any bytes as a string in round brackets.
void AppendPdfBytes(std::string& text, std::string_view bytes);
/// Appends "N 0 R".
void AppendPdfReference(std::string& text, unsigned int object);
std::string PdfReference(unsigned int object);
