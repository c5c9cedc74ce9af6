// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

namespace orvprint {

// Elements reported by ORVXmlTree::GetUnreadElements: those that would be visible but whose names are not in
// the vocabulary (vocabulary.h). Each has a bit, in order of importance.

/// Bits of the elements that standard SVG renders and the vocabulary lacks.
inline constexpr std::uint32_t kStandardElements = (1U << 9U) - 1U;
/// Bit of all other elements.
inline constexpr std::uint32_t kOtherElements = 1U << 31U;

/// Bit of an element whose name is not in the vocabulary; 0 if it is invisible by itself or belongs to
/// another XML vocabulary.
ORV_PLATFORM_EXPORT std::uint32_t BitOfUnreadElement(std::string_view name);
/// Element name of a bit. @param place  index of the bit, from 0 @return empty when there is none
ORV_PLATFORM_EXPORT std::string_view NameOfUnreadElement(unsigned int place);

}  // namespace orvprint
