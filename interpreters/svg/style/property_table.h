// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

#include "interpreters/svg/style/paint.h"

/// Accumulated effect of one style attribute.
struct StyleStep {
    SvgDrawState& state;
    PaintMentions mentions{};
    float strokeFactor = 1.0F;
    float fillFactor = 1.0F;
};

/// A property of style attributes.
struct PropertyRow {
    std::string_view name;
    /// Null if the property is recognised but has no effect.
    void (*apply)(StyleStep& step, std::string_view value);
};

/// All known properties.
std::span<const PropertyRow> GetProperties();

/// The row of a property; null for an unknown name. Names are case-sensitive.
const PropertyRow* FindProperty(std::string_view name);
