// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>

#include "interpreters/svg/style/paint.h"

/// What one style attribute has said so far.
struct StyleStep {
    SvgDrawState& state;
    PaintMentions mentions{};
    float strokeFactor = 1.0F;
    float fillFactor = 1.0F;
};

/// A property that style attributes may hold.
struct PropertyRow {
    std::string_view name;
    void (*apply)(StyleStep& step, std::string_view value);  ///< null: recognised, without effect
};

/// Every property known by name.
std::span<const PropertyRow> GetProperties();

/// The row of a property, null for an unknown name. Names match exactly.
const PropertyRow* FindProperty(std::string_view name);
