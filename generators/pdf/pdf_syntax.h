// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"

/// Default number of decimal places of lengths.
inline constexpr int kPdfPlaces = 4;
/// Significant digits of matrix coefficients.
inline constexpr int kPdfFactorDigits = 9;

/// Appends the six coefficients of a matrix, each followed by a space.
void AppendPdfMap(std::string& text, const ORVMathAffine2D& map);
/// Appends a text string: plain ASCII, otherwise UTF-16 as PDF defines it. Invalid UTF-8 becomes U+FFFD.
void AppendPdfText(std::string& text, std::string_view utf8);
/// Appends UTF-8 text as hexadecimal UTF-16.
void AppendHexUtf16(std::string& text, std::string_view utf8);
/// Appends arbitrary bytes as a literal string in parentheses.
void AppendPdfBytes(std::string& text, std::string_view bytes);
/// Appends the reference "N 0 R".
void AppendPdfReference(std::string& text, unsigned int object);
std::string PdfReference(unsigned int object);
