// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>

/// Tolerance of fitting, held in single precision: lengths within it agree, scales within it of 1 are 1.
inline constexpr double kFitTolerance = static_cast<double>(0.01F);

/// True for a scale in the band around 1 whose ends belong to it.
inline bool IsUnitScale(double scale) { return scale >= 1.0 - kFitTolerance && scale <= 1.0 + kFitTolerance; }

inline bool IsWithinTolerance(double a, double b) { return std::fabs(a - b) <= kFitTolerance; }
