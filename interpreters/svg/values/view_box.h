// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

struct ORVPrtViewBox;

/// Reads the four numbers of a "viewBox" into `box`. Only blanks separate them, on purpose: "0,0,100,100"
/// leaves the first three unchanged and sets the height to 0.
/// @return kEmpty for an empty text, else kRead, even if numbers are invalid
int ReadViewBox(std::string_view text, ORVPrtViewBox& box);
