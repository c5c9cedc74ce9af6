// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg2/text/FontMetrics.h"

namespace svg2 {

/// How far below the line the alphabetic baseline of a style lies, where another one lies on the line.
double BaselineDrop(const Style& style, const FontMetrics& metrics);

}  // namespace svg2
