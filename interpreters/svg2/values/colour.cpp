// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/colour.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "interpreters/svg2/values/colour_spaces.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

struct NamedColour {
    std::string_view name;  // in lower case; rows are sorted by name
    std::uint32_t rgb;
};

constexpr NamedColour kNamedColours[] = {
    {"aliceblue", 0xf0f8ff},
    {"antiquewhite", 0xfaebd7},
    {"aqua", 0x00ffff},
    {"aquamarine", 0x7fffd4},
    {"azure", 0xf0ffff},
    {"beige", 0xf5f5dc},
    {"bisque", 0xffe4c4},
    {"black", 0x000000},
    {"blanchedalmond", 0xffebcd},
    {"blue", 0x0000ff},
    {"blueviolet", 0x8a2be2},
    {"brown", 0xa52a2a},
    {"burlywood", 0xdeb887},
    {"cadetblue", 0x5f9ea0},
    {"chartreuse", 0x7fff00},
    {"chocolate", 0xd2691e},
    {"coral", 0xff7f50},
    {"cornflowerblue", 0x6495ed},
    {"cornsilk", 0xfff8dc},
    {"crimson", 0xdc143c},
    {"cyan", 0x00ffff},
    {"darkblue", 0x00008b},
    {"darkcyan", 0x008b8b},
    {"darkgoldenrod", 0xb8860b},
    {"darkgray", 0xa9a9a9},
    {"darkgreen", 0x006400},
    {"darkgrey", 0xa9a9a9},
    {"darkkhaki", 0xbdb76b},
    {"darkmagenta", 0x8b008b},
    {"darkolivegreen", 0x556b2f},
    {"darkorange", 0xff8c00},
    {"darkorchid", 0x9932cc},
    {"darkred", 0x8b0000},
    {"darksalmon", 0xe9967a},
    {"darkseagreen", 0x8fbc8f},
    {"darkslateblue", 0x483d8b},
    {"darkslategray", 0x2f4f4f},
    {"darkslategrey", 0x2f4f4f},
    {"darkturquoise", 0x00ced1},
    {"darkviolet", 0x9400d3},
    {"deeppink", 0xff1493},
    {"deepskyblue", 0x00bfff},
    {"dimgray", 0x696969},
    {"dimgrey", 0x696969},
    {"dodgerblue", 0x1e90ff},
    {"firebrick", 0xb22222},
    {"floralwhite", 0xfffaf0},
    {"forestgreen", 0x228b22},
    {"fuchsia", 0xff00ff},
    {"gainsboro", 0xdcdcdc},
    {"ghostwhite", 0xf8f8ff},
    {"gold", 0xffd700},
    {"goldenrod", 0xdaa520},
    {"gray", 0x808080},
    {"green", 0x008000},
    {"greenyellow", 0xadff2f},
    {"grey", 0x808080},
    {"honeydew", 0xf0fff0},
    {"hotpink", 0xff69b4},
    {"indianred", 0xcd5c5c},
    {"indigo", 0x4b0082},
    {"ivory", 0xfffff0},
    {"khaki", 0xf0e68c},
    {"lavender", 0xe6e6fa},
    {"lavenderblush", 0xfff0f5},
    {"lawngreen", 0x7cfc00},
    {"lemonchiffon", 0xfffacd},
    {"lightblue", 0xadd8e6},
    {"lightcoral", 0xf08080},
    {"lightcyan", 0xe0ffff},
    {"lightgoldenrodyellow", 0xfafad2},
    {"lightgray", 0xd3d3d3},
    {"lightgreen", 0x90ee90},
    {"lightgrey", 0xd3d3d3},
    {"lightpink", 0xffb6c1},
    {"lightsalmon", 0xffa07a},
    {"lightseagreen", 0x20b2aa},
    {"lightskyblue", 0x87cefa},
    {"lightslategray", 0x778899},
    {"lightslategrey", 0x778899},
    {"lightsteelblue", 0xb0c4de},
    {"lightyellow", 0xffffe0},
    {"lime", 0x00ff00},
    {"limegreen", 0x32cd32},
    {"linen", 0xfaf0e6},
    {"magenta", 0xff00ff},
    {"maroon", 0x800000},
    {"mediumaquamarine", 0x66cdaa},
    {"mediumblue", 0x0000cd},
    {"mediumorchid", 0xba55d3},
    {"mediumpurple", 0x9370db},
    {"mediumseagreen", 0x3cb371},
    {"mediumslateblue", 0x7b68ee},
    {"mediumspringgreen", 0x00fa9a},
    {"mediumturquoise", 0x48d1cc},
    {"mediumvioletred", 0xc71585},
    {"midnightblue", 0x191970},
    {"mintcream", 0xf5fffa},
    {"mistyrose", 0xffe4e1},
    {"moccasin", 0xffe4b5},
    {"navajowhite", 0xffdead},
    {"navy", 0x000080},
    {"oldlace", 0xfdf5e6},
    {"olive", 0x808000},
    {"olivedrab", 0x6b8e23},
    {"orange", 0xffa500},
    {"orangered", 0xff4500},
    {"orchid", 0xda70d6},
    {"palegoldenrod", 0xeee8aa},
    {"palegreen", 0x98fb98},
    {"paleturquoise", 0xafeeee},
    {"palevioletred", 0xdb7093},
    {"papayawhip", 0xffefd5},
    {"peachpuff", 0xffdab9},
    {"peru", 0xcd853f},
    {"pink", 0xffc0cb},
    {"plum", 0xdda0dd},
    {"powderblue", 0xb0e0e6},
    {"purple", 0x800080},
    {"rebeccapurple", 0x663399},
    {"red", 0xff0000},
    {"rosybrown", 0xbc8f8f},
    {"royalblue", 0x4169e1},
    {"saddlebrown", 0x8b4513},
    {"salmon", 0xfa8072},
    {"sandybrown", 0xf4a460},
    {"seagreen", 0x2e8b57},
    {"seashell", 0xfff5ee},
    {"sienna", 0xa0522d},
    {"silver", 0xc0c0c0},
    {"skyblue", 0x87ceeb},
    {"slateblue", 0x6a5acd},
    {"slategray", 0x708090},
    {"slategrey", 0x708090},
    {"snow", 0xfffafa},
    {"springgreen", 0x00ff7f},
    {"steelblue", 0x4682b4},
    {"tan", 0xd2b48c},
    {"teal", 0x008080},
    {"thistle", 0xd8bfd8},
    {"tomato", 0xff6347},
    {"turquoise", 0x40e0d0},
    {"violet", 0xee82ee},
    {"wheat", 0xf5deb3},
    {"white", 0xffffff},
    {"whitesmoke", 0xf5f5f5},
    {"yellow", 0xffff00},
    {"yellowgreen", 0x9acd32},
};

// System colours, for print: black on white.
constexpr NamedColour kSystemColours[] = {
    {"accentcolor", 0x000000},
    {"accentcolortext", 0xffffff},
    {"activeborder", 0x000000},
    {"activecaption", 0xffffff},
    {"activetext", 0x000000},
    {"appworkspace", 0xffffff},
    {"background", 0xffffff},
    {"buttonborder", 0x000000},
    {"buttonface", 0xffffff},
    {"buttonhighlight", 0xffffff},
    {"buttonshadow", 0x000000},
    {"buttontext", 0x000000},
    {"canvas", 0xffffff},
    {"canvastext", 0x000000},
    {"captiontext", 0x000000},
    {"field", 0xffffff},
    {"fieldtext", 0x000000},
    {"graytext", 0x000000},
    {"highlight", 0xffffff},
    {"highlighttext", 0x000000},
    {"inactiveborder", 0x000000},
    {"inactivecaption", 0xffffff},
    {"inactivecaptiontext", 0x000000},
    {"infobackground", 0xffffff},
    {"infotext", 0x000000},
    {"linktext", 0x000000},
    {"mark", 0xffffff},
    {"marktext", 0x000000},
    {"menu", 0xffffff},
    {"menutext", 0x000000},
    {"scrollbar", 0xffffff},
    {"threeddarkshadow", 0x000000},
    {"threedface", 0xffffff},
    {"threedhighlight", 0xffffff},
    {"threedlightshadow", 0xffffff},
    {"threedshadow", 0x000000},
    {"visitedtext", 0x000000},
    {"window", 0xffffff},
    {"windowframe", 0x000000},
    {"windowtext", 0x000000},
};

Colour FromRgb(std::uint32_t rgb) {
    return {static_cast<std::uint8_t>(rgb >> 16U), static_cast<std::uint8_t>(rgb >> 8U),
            static_cast<std::uint8_t>(rgb), 1.0F};
}

template <std::size_t kCount>
bool FindNamed(const NamedColour (&rows)[kCount], std::string_view name, Colour& colour) {
    constexpr std::size_t kLongestName = 32;
    if (name.empty() || name.size() > kLongestName) return false;
    std::array<char, kLongestName> lower{};
    std::transform(name.begin(), name.end(), lower.begin(), ToLower);
    const std::string_view wanted(lower.data(), name.size());
    const NamedColour* found =
        std::lower_bound(std::begin(rows), std::end(rows), wanted,
                         [](const NamedColour& row, std::string_view text) { return row.name < text; });
    if (found == std::end(rows) || found->name != wanted) return false;
    colour = FromRgb(found->rgb);
    return true;
}

std::optional<unsigned int> HexDigit(char c) {
    if (IsDigit(c)) return static_cast<unsigned int>(c - '0');
    const char lower = ToLower(c);
    if (lower >= 'a' && lower <= 'f') return static_cast<unsigned int>(lower - 'a' + 10);
    return std::nullopt;
}

std::uint8_t ToByte(double value) {  // value from 0 to 255
    return static_cast<std::uint8_t>(std::lround(std::clamp(value, 0.0, 255.0)));
}

bool TakeHexColour(Scanner& scanner, Colour& colour) {
    constexpr unsigned int kBothDigits = 17;  // "8" stands for "88"
    std::array<unsigned int, 8> digits{};
    std::size_t count = 0;
    for (; const auto digit = HexDigit(scanner.Peek(1 + count)); ++count) {
        if (count == digits.size()) return false;
        digits[count] = *digit;
    }
    if (IsNameCharacter(scanner.Peek(1 + count))) return false;
    std::array<unsigned int, 4> parts{0, 0, 0, 255};
    if (count == 3 || count == 4) {
        for (std::size_t i = 0; i < count; ++i) parts[i] = digits[i] * kBothDigits;
    } else if (count == 6 || count == 8) {
        for (std::size_t i = 0; i < count / 2; ++i) parts[i] = digits[2 * i] * 16 + digits[2 * i + 1];
    } else {
        return false;
    }
    colour = {static_cast<std::uint8_t>(parts[0]), static_cast<std::uint8_t>(parts[1]),
              static_cast<std::uint8_t>(parts[2]), static_cast<float>(parts[3]) / 255.0F};
    scanner.Advance(1 + count);
    return true;
}

/// A component of a colour function.
struct Component {
    double value = 0.0;
    bool isPercentage = false;
    double degreesPerUnit = 1.0;  // for hues
};

bool TakeComponent(Scanner& scanner, Component& component) {
    if (EqualsIgnoringCase(scanner.Rest().substr(0, 4), "none")) {
        scanner.Advance(4);
        component = {};
        return true;
    }
    if (!scanner.TakeNumber(component.value)) return false;
    component.isPercentage = scanner.Take('%');
    const std::string_view unit = scanner.TakeName();
    if (unit.empty() || EqualsIgnoringCase(unit, "deg")) return true;
    if (EqualsIgnoringCase(unit, "turn"))
        component.degreesPerUnit = 360.0;
    else if (EqualsIgnoringCase(unit, "grad"))
        component.degreesPerUnit = 0.9;
    else if (EqualsIgnoringCase(unit, "rad"))
        component.degreesPerUnit = 57.29577951308232;
    else
        return false;
    return true;
}

/// Reads three components and an optional opacity, in legacy syntax with commas or modern syntax with a
/// slash.
bool ReadComponents(std::string_view text, std::array<Component, 3>& components, float& opacity) {
    Scanner scanner(text);
    scanner.SkipSpace();
    for (std::size_t i = 0; i < components.size(); ++i) {
        if (i > 0) scanner.SkipCommaSpace();
        if (!TakeComponent(scanner, components[i])) return false;
    }
    scanner.SkipSpace();
    if (scanner.AtEnd()) return true;
    if (!scanner.Take(',') && !scanner.Take('/')) return false;
    scanner.SkipSpace();
    Component alpha;
    if (!TakeComponent(scanner, alpha)) return false;
    scanner.SkipSpace();
    opacity =
        static_cast<float>(std::clamp(alpha.isPercentage ? alpha.value / 100.0 : alpha.value, 0.0, 1.0));
    return scanner.AtEnd();
}

bool ReadRgb(std::string_view text, Colour& colour) {
    std::array<Component, 3> parts;
    float opacity = 1.0F;
    if (!ReadComponents(text, parts, opacity)) return false;
    std::array<std::uint8_t, 3> bytes{};
    for (std::size_t i = 0; i < parts.size(); ++i)
        bytes[i] = ToByte(parts[i].isPercentage ? parts[i].value * 255.0 / 100.0 : parts[i].value);
    colour = {bytes[0], bytes[1], bytes[2], opacity};
    return true;
}

bool ReadHsl(std::string_view text, Colour& colour) {
    std::array<Component, 3> parts;
    float opacity = 1.0F;
    if (!ReadComponents(text, parts, opacity)) return false;
    const double hue = parts[0].value * parts[0].degreesPerUnit / 30.0;  // in units of 30 degrees
    const double saturation = std::clamp(parts[1].value / 100.0, 0.0, 1.0);
    const double lightness = std::clamp(parts[2].value / 100.0, 0.0, 1.0);
    const double reach = saturation * std::min(lightness, 1.0 - lightness);
    const auto channel = [&](double offset) {
        const double k = offset + hue - 12.0 * std::floor((offset + hue) / 12.0);
        return ToByte(255.0 * (lightness - reach * std::max(-1.0, std::min({k - 3.0, 9.0 - k, 1.0}))));
    };
    colour = {channel(0.0), channel(8.0), channel(4.0), opacity};
    return true;
}

/// A component's number, where 100 % equals `whole`; for a hue, degrees.
double NumberOf(const Component& component, double whole) {
    return component.isPercentage ? component.value * whole / 100.0
                                  : component.value * component.degreesPerUnit;
}

/// Reads a colour function of CSS Color 4 that is not limited to sRGB.
bool ReadWideColour(std::string_view name, std::string_view text, Colour& colour) {
    struct Function {
        std::string_view name;
        Components wholes;  // value of 100 % for each component
        Components (*toRgb)(const Components& components);
    };
    constexpr Function kFunctions[] = {
        {"hwb",
         {1.0, 100.0, 100.0},
         [](const Components& c) {
             return HwbToRgb({c[0], c[1] / 100.0, c[2] / 100.0});
         }},
        {"lab", {100.0, 125.0, 125.0}, [](const Components& c) { return LabToRgb(c); }},
        {"lch", {100.0, 150.0, 1.0}, [](const Components& c) { return LabToRgb(FromPolar(c)); }},
        {"oklab", {1.0, 0.4, 0.4}, [](const Components& c) { return OklabToRgb(c); }},
        {"oklch", {1.0, 0.4, 1.0}, [](const Components& c) { return OklabToRgb(FromPolar(c)); }},
    };
    const bool isOfSpace = EqualsIgnoringCase(name, "color");
    const Function* function =
        std::find_if(std::begin(kFunctions), std::end(kFunctions),
                     [name](const Function& row) { return EqualsIgnoringCase(name, row.name); });
    if (!isOfSpace && function == std::end(kFunctions)) return false;
    Scanner scanner(text);
    scanner.SkipSpace();
    const std::string_view space = isOfSpace ? scanner.TakeName() : std::string_view();
    std::array<Component, 3> parts;
    float opacity = 1.0F;
    if (!ReadComponents(scanner.Rest(), parts, opacity)) return false;
    Components components{};
    for (std::size_t i = 0; i < components.size(); ++i)
        components[i] = NumberOf(parts[i], isOfSpace ? 1.0 : function->wholes[i]);
    if (isOfSpace && !ToRgb(space, components)) return false;
    if (!isOfSpace) components = function->toRgb(components);
    colour = {ToByte(components[0] * 255.0), ToByte(components[1] * 255.0), ToByte(components[2] * 255.0),
              opacity};
    return true;
}

bool ReadColourFunction(std::string_view name, std::string_view arguments, Colour& colour) {
    if (EqualsIgnoringCase(name, "rgb") || EqualsIgnoringCase(name, "rgba"))
        return ReadRgb(arguments, colour);
    if (EqualsIgnoringCase(name, "hsl") || EqualsIgnoringCase(name, "hsla"))
        return ReadHsl(arguments, colour);
    if (!EqualsIgnoringCase(name, "light-dark")) return ReadWideColour(name, arguments, colour);
    Scanner scanner(arguments);
    scanner.SkipSpace();
    return TakeColour(scanner, colour);
}

}  // namespace

bool TakeColour(Scanner& scanner, Colour& colour) {
    if (scanner.Peek() == '#') return TakeHexColour(scanner, colour);
    const std::size_t start = scanner.GetPosition();
    const std::string_view name = scanner.TakeName();
    std::string_view arguments;
    if (scanner.Peek() == '(') {
        if (scanner.TakeParenthesesOrRest(arguments) && ReadColourFunction(name, arguments, colour))
            return true;
    } else if (EqualsIgnoringCase(name, "transparent")) {
        colour = {0, 0, 0, 0.0F};
        return true;
    } else if (FindNamed(kNamedColours, name, colour) || FindNamed(kSystemColours, name, colour)) {
        return true;
    }
    scanner.SetPosition(start);
    return false;
}

bool ReadColour(std::string_view text, Colour& colour) {
    Scanner scanner(Trim(text));
    Colour read;
    if (!TakeColour(scanner, read)) return false;
    scanner.SkipSpace();
    const std::string_view profile = scanner.TakeName();
    std::string_view arguments;
    const bool hasProfile = EqualsIgnoringCase(profile, "icc-color") ||
                            EqualsIgnoringCase(profile, "device-cmyk") ||
                            EqualsIgnoringCase(profile, "device-color");
    if (!profile.empty() && !(hasProfile && scanner.TakeParentheses(arguments))) return false;
    if (!scanner.AtEnd()) return false;
    colour = read;
    return true;
}

}  // namespace svg2
