// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/unread_elements.h"

#include <algorithm>
#include <array>

namespace orvprint {
namespace {

constexpr std::array<std::string_view, 20> kNames{
    // rendered by standard SVG
    "style", "linearGradient", "radialGradient", "tspan", "clipPath", "mask", "textPath", "switch", "filter",
    // not, or not always, rendered by standard SVG
    "foreignObject", "tref", "flowRoot", "script", "animate", "animateTransform", "animateMotion", "set",
    "font", "meshgradient", "video"};
static_assert(kStandardElements == (1U << 9U) - 1U && kNames[8] == "filter");

/// Children of the elements above, and descriptive elements.
constexpr std::array<std::string_view, 12> kSilent{"stop",      "metadata",   "view",     "mpath",
                                                   "font-face", "flowRegion", "flowPara", "glyph",
                                                   "meshrow",   "meshpatch",  "cursor",   "missing-glyph"};

}  // namespace

std::uint32_t BitOfUnreadElement(std::string_view name) {
    // Elements of editors and metadata have a namespace prefix; filter primitives start with "fe".
    if (name.starts_with("fe") || name.find(':') != std::string_view::npos) return 0;
    const auto found = std::find(kNames.begin(), kNames.end(), name);
    if (found != kNames.end()) return 1U << static_cast<unsigned>(found - kNames.begin());
    return std::find(kSilent.begin(), kSilent.end(), name) != kSilent.end() ? 0 : kOtherElements;
}

std::string_view NameOfUnreadElement(unsigned int place) {
    return place < kNames.size() ? kNames[place] : std::string_view();
}

}  // namespace orvprint
