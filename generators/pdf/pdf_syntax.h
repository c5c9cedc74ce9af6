#pragma once

#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"

/// Appends a number in its shortest form, rounded to that many digits after the point (0 to 6).
void AppendPdfNumber(std::string& text, double number, int places = 4);
/// Appends a number with nine significant digits, for factors.
void AppendPdfFactor(std::string& text, double number);
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
