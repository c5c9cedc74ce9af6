// SPDX-License-Identifier: Apache-2.0
#include "library/check/meant_style.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/paint.h"
#include "interpreters/svg/style/property_table.h"
#include "interpreters/svg/style/style_attribute.h"
#include "library/check/value_checks.h"
#include "platform/system/number_conversion.h"

namespace {

struct SaidRow {
    std::string_view name;
    SaidOf property;
};
constexpr std::array kSaid{
    SaidRow{"fill", SaidOf::kFill},
    SaidRow{"fill-opacity", SaidOf::kFillOpacity},
    SaidRow{"fill-rule", SaidOf::kFillRule},
    SaidRow{"font-family", SaidOf::kFontFamily},
    SaidRow{"font-size", SaidOf::kFontSize},
    SaidRow{"font-weight", SaidOf::kFontWeight},
    SaidRow{"letter-spacing", SaidOf::kLetterSpacing},
    SaidRow{"stroke", SaidOf::kStroke},
    SaidRow{"stroke-dasharray", SaidOf::kDashes},
    SaidRow{"stroke-linecap", SaidOf::kLineCap},
    SaidRow{"stroke-linejoin", SaidOf::kLineJoin},
    SaidRow{"stroke-opacity", SaidOf::kStrokeOpacity},
    SaidRow{"stroke-width", SaidOf::kStrokeWidth},
    SaidRow{"text-anchor", SaidOf::kTextAnchor},
    SaidRow{"writing-mode", SaidOf::kWritingMode},
};

std::uint32_t BitsOf(std::string_view name) {
    // The general opacity affects both.
    if (name == "opacity")
        return static_cast<std::uint32_t>(SaidOf::kFillOpacity) |
               static_cast<std::uint32_t>(SaidOf::kStrokeOpacity);
    const auto* const found =
        std::find_if(kSaid.begin(), kSaid.end(), [&](const SaidRow& row) { return row.name == name; });
    return static_cast<std::uint32_t>(found == kSaid.end() ? SaidOf::kNone : found->property);
}

}  // namespace

void MeantStyle::TakeInOpacity(double& part, std::string_view value) {
    float factor = 1.0F;
    if (CheckOpacity(value)) isOpacityTold = true;
    if (ReadOpacityFactor(value, factor)) part = std::clamp(static_cast<double>(factor), 0.0, 1.0);
}

void MeantStyle::TakeInProperty(std::string_view name, std::string_view value) {
    if (value.empty() || value == "inherit") return;
    said |= BitsOf(name);
    if (name == "fill") {
        fillIsCurrent = value == "currentColor";
        fillIsReference = value.find("url") != value.npos;
    } else if (name == "stroke") {
        strokeIsCurrent = value == "currentColor";
    } else if (name == "fill-opacity") {
        TakeInOpacity(fillOpacity, value);
    } else if (name == "stroke-opacity") {
        TakeInOpacity(strokeOpacity, value);
    } else if (name == "stroke-width") {
        widthHasUnit = HasPhysicalUnit(value);
    } else if (name == "font-size") {
        sizeHasUnit = HasPhysicalUnit(value);
    } else if (name == "stroke-miterlimit") {
        double limit = 0.0;
        if (ORVConvertToDouble(value, limit) == kRead && limit >= 1.0) miterLimit = limit;
    } else if (name == "overflow") {
        isClipped = value != "visible" && value != "auto";
    }
}

void MeantStyle::TakeIn(const ORVXmlNode& element) {
    isClipped = true;
    double own = 1.0;  // the last declaration wins
    const auto takeIn = [&](std::string_view name, std::string_view value) {
        if (name == "opacity" && !value.empty()) {
            TakeInOpacity(own, value);
            said |= BitsOf(name);
        } else {
            TakeInProperty(name, value);
        }
    };
    std::string_view style;
    for (std::uint32_t i = 0; i < element.attributeCount; ++i) {
        const ORVXmlAttribute attribute = element.GetAttribute(i);
        if (attribute.name == "style")
            style = attribute.value;
        else if (attribute.name == "xml:space")
            keepsBlanks = attribute.value == "preserve";
        else if (FindProperty(attribute.name))
            takeIn(attribute.name, attribute.value);
    }
    StyleScanner scanner(style);
    for (StyleDeclaration declaration; scanner.Next(declaration);)
        takeIn(declaration.name, declaration.value);
    ownOpacity = own;
    opacity *= own;
}
