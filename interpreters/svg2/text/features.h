// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "interpreters/svg2/css/Style.h"
#include "platform/visualization/fonts/ORVShapedText.h"

namespace svg2 {

/// The number of a four-letter tag of a feature or axis.
constexpr std::uint32_t FeatureTag(const char (&letters)[5]) {
    const auto byte = [&](int i) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(letters[i]));
    };
    return byte(0) << 24U | byte(1) << 16U | byte(2) << 8U | byte(3);
}

/// Adds the font features that a style requests; later ones take precedence.
void AddFeatures(const Style& style, std::vector<ORVFontFeature>& features);

}  // namespace svg2
