// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// ICC colour profiles, generated on the fly.

/// sRGB.
std::string SrgbProfile();
/// sRGB with red and blue exchanged.
std::string SwappedProfile();
/// Grey with linear samples: 55 looks like 128 in sRGB.
std::string LinearGreyProfile();
/// CMYK inks of which cyan prints as red, and the others not at all.
std::string RedInkProfile();
