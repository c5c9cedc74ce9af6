// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Numbers for text formats: a period in every locale, no exponents, no superfluous digits.

/// Converts to fixed point: the number times 10 to the power of `places`, rounded. 0 for numbers that are not
/// finite or far too large.
std::int64_t ToFixed(double number, int places);
/// Maximum number of characters of a fixed-point number.
inline constexpr std::size_t kNumberRoom = 24;
/// Writes a fixed-point number as AppendFixed does. @param out  has room for kNumberRoom characters
/// @return pointer past the last character
char* WriteFixed(char* out, std::int64_t fixed, int places);
/// Writes a number rounded to `places` decimal places.
char* WriteDecimal(char* out, double number, int places);
/// Appends a fixed-point number: "-.5", "12", "3.25". @param places  decimal places, 0 to 9
void AppendFixed(std::string& text, std::int64_t fixed, int places);
/// Appends a number with at most `places` (0 to 9) decimal places.
void AppendDecimal(std::string& text, double number, int places);
/// Appends a number with at most `digits` (1 to 17) significant digits; 0 if it is not finite.
void AppendSignificant(std::string& text, double number, int digits);
