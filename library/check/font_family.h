// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/style/text_properties.h"
#include "library/check/finding_writer.h"

/// The font-family list in force at the current element. A value that is copied as it is inherited.
struct FontFamily {
    std::string_view families;  ///< as written
    PropertySource source = PropertySource::kAttribute;
    NumberedElement saidBy;  ///< element that specified it; its node is null if none did

    /// Applies what an element specifies.
    void TakeIn(const NumberedElement& element);
};
