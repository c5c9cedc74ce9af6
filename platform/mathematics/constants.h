// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Circle constants in double precision.
inline constexpr double ORVPI = 3.14159265358979323846;
inline constexpr double ORV2PI = 2.0 * ORVPI;
/// Factor from degrees to radians.
inline constexpr double ORVDegreeToRadian = ORVPI / 180.0;
