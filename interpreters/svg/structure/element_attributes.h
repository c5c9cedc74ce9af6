// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/xml/vocabulary.h"

/// Where an "svg" element stands; its attributes differ in what they do.
enum class SvgPlace { kPage, kNested };

/// The attributes that make a difference on an element, one bit per AttributeName; none for an element
/// without a handler. What is read and then dropped ("rx" of a rectangle) is not among them. The handlers do
/// not ask this table; the tests hold it to what they do.
std::uint64_t GetEffectiveAttributes(ElementName element, SvgPlace place = SvgPlace::kNested);

inline bool HasEffect(std::uint64_t attributes, AttributeName name) {
    return ((attributes >> static_cast<unsigned>(name)) & 1U) != 0;
}
