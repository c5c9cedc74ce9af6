// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/print/ORVPrintGenerator.h"

/// Reads a colour as style sheets write it: a name, "#rgb" and its kin, rgb(), hsl(), "transparent".
/// @return false when the text is nothing of the kind
bool ReadCssColour(std::string_view text, ORVPrintColour& colour);
