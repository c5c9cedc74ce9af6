// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Numbers as text formats take them: a period whatever the locale, no exponents, no digit too many.

/// A number in fixed point: times 10 to the power of `places`, rounded. 0 for what is not finite, or too
/// large by far.
std::int64_t ToFixed(double number, int places);
/// The most characters that a number in fixed point has.
inline constexpr std::size_t kNumberRoom = 24;
/// Writes a number in fixed point as AppendFixed does. @param out  has kNumberRoom characters of room
/// @return behind it
char* WriteFixed(char* out, std::int64_t fixed, int places);
/// The same for a number that is rounded to `places`.
char* WriteDecimal(char* out, double number, int places);
/// Appends a number in fixed point: "-.5", "12", "3.25". @param places  0 to 9
void AppendFixed(std::string& text, std::int64_t fixed, int places);
/// Appends a number with at most `places` (0 to 9) digits after the period.
void AppendDecimal(std::string& text, double number, int places);
/// Appends a number with at most `digits` (1 to 17) significant digits, as is needed for factors. 0 for what
/// is not finite.
void AppendSignificant(std::string& text, double number, int digits);
