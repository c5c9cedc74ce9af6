// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

/// Result of a text comparison.
enum ORVTextComparison { kTextDiffers = 0, kTextEqualsIgnoringCase = 1, kTextIdentical = 2 };

/// Compares two texts. @return 2 identical, 1 equal except for the case of ASCII letters, 0 otherwise
ORV_PLATFORM_EXPORT int ORVCompareText(std::string_view a, std::string_view b);

/// Converts the decimal number at the start of `text`, after optional white space (space, tab, LF, CR, VT,
/// FF); anything after the number is ignored. A number is an optional sign, digits with an optional period
/// (at least one digit), and an exponent if it has at least one digit. The separator is a period in every
/// locale.
/// @param out  set only on 1: the nearest double; infinity on overflow, 0 on underflow
/// @param length  may be null; set only on 1 to the number of bytes from the start of `text` to the end of
/// the number
/// @return 1 converted, 0 no number, -1 when the text is empty or only white space
ORV_PLATFORM_EXPORT int ORVConvertToDouble(std::string_view text, double& out, std::size_t* length = nullptr);

/// Like ORVConvertToDouble, for a decimal integer with an optional sign. The value wraps modulo 2^32.
ORV_PLATFORM_EXPORT int ORVConvertToUnsigned(std::string_view text, unsigned int& out);

/// Like ORVConvertToUnsigned, with the 32 bits interpreted as two's complement.
ORV_PLATFORM_EXPORT int ORVConvertToInt(std::string_view text, int& out);
