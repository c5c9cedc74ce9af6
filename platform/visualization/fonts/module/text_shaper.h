// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/visualization/fonts/ORVTextLayout.h"

/// See ORVLayoutText and ORVMeasureText. Both throw FontFailure where the text cannot be set as it should.
ORVTextLayout LayOutText(std::string_view utf8, const ORVTextStyle& style);
ORVTextExtent MeasureText(std::string_view utf8, const ORVTextStyle& style);
