// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <vector>

/// Whether the bits are equal, or both are NaN.
inline bool SameNumber(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

inline bool SameNumbers(const std::vector<double>& a, const std::vector<double>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameNumber);
}
