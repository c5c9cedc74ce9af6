// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// Result of a text comparison.
enum ORVTextComparison { kTextDiffers = 0, kTextEqualsIgnoringCase = 1, kTextIdentical = 2 };

/// Compares two texts: 2 identical, 1 equal without regard to the case of ASCII letters, 0 otherwise.
ORV_PLATFORM_EXPORT int ORVCompareText(std::string_view a, std::string_view b);

/// Converts the decimal number at the start of `text`; what follows it is ignored. White space (space,
/// tab, LF, CR, VT, FF) before it is skipped. A number is an optional sign, digits with an optional
/// period (at least one digit) and an exponent when it has a digit. A period is read whatever the locale.
/// @param out  written only on 1: the nearest double; an infinity on overflow, 0 on underflow
/// @param length  if not null: written only on 1, the bytes of `text` up to the end of the number
/// @return 1 converted, 0 no number there, -1 when the text is empty or only white space
ORV_PLATFORM_EXPORT int ORVConvertToDouble(std::string_view text, double& out, std::size_t* length = nullptr);

/// As ORVConvertToDouble for a decimal integer with an optional sign; the value wraps modulo 2^32.
ORV_PLATFORM_EXPORT int ORVConvertToUnsigned(std::string_view text, unsigned int& out);

/// As ORVConvertToUnsigned, the 32 bits taken as two's complement.
ORV_PLATFORM_EXPORT int ORVConvertToInt(std::string_view text, int& out);
