// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/print/ORVPrintGenerator.h"

/// Parses a CSS colour: a name, "#rgb" and its variants, rgb(), hsl() or "transparent".
/// @return false if the text is not such a colour
bool ReadCssColour(std::string_view text, ORVPrintColour& colour);
