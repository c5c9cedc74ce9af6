// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/sheet_values.h"

#include <algorithm>
#include <initializer_list>

#include "interpreters/svg2/css/properties.h"
#include "interpreters/svg2/values/scanner.h"
#include "interpreters/svg2/values/transform.h"

namespace svg2 {

std::optional<Name> FindProperty(std::string_view text) {
    std::optional<Name> name = FindName(text);
    if (!name) {
        constexpr std::size_t kLongest = 32;
        char lower[kLongest];
        if (text.size() > kLongest) return std::nullopt;
        for (std::size_t i = 0; i < text.size(); ++i) lower[i] = ToLower(text[i]);
        name = FindName({lower, text.size()});
    }
    if (!name || !IsProperty(*name)) return std::nullopt;
    return name;
}

bool IsGeometryValue(Name name, std::string_view value, const UnitSizes& sizes) {
    value = Trim(value);
    const auto isAny = [value](std::initializer_list<std::string_view> words) {
        return std::any_of(words.begin(), words.end(),
                           [value](std::string_view word) { return EqualsIgnoringCase(value, word); });
    };
    if (isAny({"initial", "unset", "revert"})) return true;
    ORVMathAffine2D transform;
    Length length;
    switch (name) {
        case Name::kD: return isAny({"none"}) || EqualsIgnoringCase(value.substr(0, 5), "path(");
        case Name::kTransform: return ReadTransformProperty(value, sizes, 1.0, 1.0, transform);
        case Name::kX:
        case Name::kY:
        case Name::kCx:
        case Name::kCy: return ReadLength(value, sizes, length);
        case Name::kR: break;
        default:
            if (isAny({"auto"})) return true;
    }
    if (!ReadLength(value, sizes, length)) return false;
    // values that mix lengths and percentages may be either
    const bool isNegative =
        (length.px < 0.0 && length.percent <= 0.0) || (length.percent < 0.0 && length.px <= 0.0);
    return !isNegative;
}

bool IsSheetValue(std::string_view property, std::string_view value) {
    if (property.starts_with("--")) return true;
    const std::optional<Name> name = FindProperty(property);
    if (!name || Trim(value).empty()) return false;
    if (value.find("var(") != std::string_view::npos) return true;  // known only where the variable is used
    UnitSizes sizes;
    if (IsGeometry(*name)) return IsGeometryValue(*name, value, sizes);
    const Style parent;
    Style style;
    return SetProperty(*name, value, {parent, sizes}, style);
}

}  // namespace svg2
