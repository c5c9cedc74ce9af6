// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

struct ORVPrtViewBox;

/// Reads the four numbers of a "viewBox" over what `box` holds. Only blanks separate them: a deliberate
/// limit, so that "0,0,100,100" leaves the first three alone and reads 0 into the height.
/// @return kEmpty for an empty text, else kRead, whatever could be read
int ReadViewBox(std::string_view text, ORVPrtViewBox& box);
