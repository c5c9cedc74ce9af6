// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

namespace orvprint {

// Elements of drawings that ORVXmlTree::GetUnreadElements tells of: those that show something, but whose
// names are not among the ones that drawings are read by (vocabulary.h). Each has a bit, in the order in
// which they matter.

/// Elements whose names stand for what standard SVG draws and the vocabulary lacks, as a set of bits.
inline constexpr std::uint32_t kStandardElements = (1U << 9U) - 1U;
/// Elements of other names.
inline constexpr std::uint32_t kOtherElements = 1U << 31U;

/// The bit of an unknown element; 0 for what shows nothing by itself, or belongs to another vocabulary.
ORV_PLATFORM_EXPORT std::uint32_t BitOfUnreadElement(std::string_view name);
/// The name for a bit's place, from 0; empty where there is none.
ORV_PLATFORM_EXPORT std::string_view NameOfUnreadElement(unsigned int place);

}  // namespace orvprint
