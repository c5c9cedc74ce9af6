// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Pi in double precision.
inline constexpr double ORVPI = 3.14159265358979323846;
inline constexpr double ORV2PI = 2.0 * ORVPI;
/// Radians per degree.
inline constexpr double ORVDegreeToRadian = ORVPI / 180.0;
