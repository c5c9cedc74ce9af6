// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/visualization/fonts/ORVTextLayout.h"

/// See ORVLayoutText and ORVMeasureText. Both throw FontFailure when the text cannot be set correctly.
ORVTextLayout LayOutText(std::string_view utf8, const ORVTextStyle& style);
ORVTextExtent MeasureText(std::string_view utf8, const ORVTextStyle& style);
