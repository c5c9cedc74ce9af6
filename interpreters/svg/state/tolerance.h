// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

/// Tolerance for fitting, rounded to single precision: lengths that differ by at most this are equal, and
/// scales that differ from 1 by at most this are 1.
inline constexpr double kFitTolerance = static_cast<double>(0.01F);

/// Whether a scale is within the tolerance of 1, inclusive.
inline bool IsUnitScale(double scale) { return scale >= 1.0 - kFitTolerance && scale <= 1.0 + kFitTolerance; }

inline bool IsWithinTolerance(double a, double b) { return std::fabs(a - b) <= kFitTolerance; }
