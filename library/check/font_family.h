// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/style/text_properties.h"
#include "library/check/finding_writer.h"

/// The list of font families in force where the walk stands. A value, handed down as the drawing state is.
struct FontFamily {
    std::string_view families;  ///< as written
    PropertySource source = PropertySource::kAttribute;
    NumberedElement saidBy;  ///< without a node when nothing was said

    /// Takes in what an element says.
    void TakeIn(const NumberedElement& element);
};
