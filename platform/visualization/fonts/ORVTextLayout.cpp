// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/ORVTextLayout.h"

#include "platform/visualization/fonts/font_system.h"

ORVTextLayout ORVLayoutText(std::string_view utf8, const ORVTextStyle& style) {
    ORVTextLayout layout;
    ORVFontSystem* const system = ORVGetFontSystem();
    layout.isSet = system && system->LayOut(utf8, style, layout);
    return layout;
}

ORVTextExtent ORVMeasureText(std::string_view utf8, const ORVTextStyle& style) {
    ORVTextExtent extent;
    ORVFontSystem* const system = ORVGetFontSystem();
    extent.isSet = system && system->Measure(utf8, style, extent);
    return extent;
}
