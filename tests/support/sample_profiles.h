// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// Colour profiles (ICC), made anew.

/// sRGB itself.
std::string SrgbProfile();
/// As sRGB, but what it calls red is blue, and the other way round.
std::string SwappedProfile();
/// Greys whose samples are amounts of light: 55 looks like 128 in sRGB.
std::string LinearGreyProfile();
/// Inks of which cyan prints as red, and the others not at all.
std::string RedInkProfile();
