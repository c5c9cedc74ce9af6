// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/xml/vocabulary.h"

/// Whether an "svg" element is a page or nested; some attributes differ in effect.
enum class SvgPlace { kPage, kNested };

/// The attributes that have an effect on an element, one bit per AttributeName; none for an element without a
/// handler. Attributes that are read but ignored ("rx" of a rectangle) are not included. Handlers do not use
/// this table; tests keep the two consistent.
std::uint64_t GetEffectiveAttributes(ElementName element, SvgPlace place = SvgPlace::kNested);

inline bool HasEffect(std::uint64_t attributes, AttributeName name) {
    return ((attributes >> static_cast<unsigned>(name)) & 1U) != 0;
}
