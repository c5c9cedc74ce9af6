// SPDX-License-Identifier: Apache-2.0
#include "library/check/unread_properties.h"

#include <initializer_list>

#include "interpreters/svg2/css/selectors.h"
#include "interpreters/svg2/values/colour.h"
#include "interpreters/svg2/values/scanner.h"
#include "library/check/text_set.h"

namespace {

/// Properties that are not supported here, and values of them that have no effect.
struct UnreadProperty {
    std::string_view name;
    std::initializer_list<std::string_view> harmless;
    const char* message;
};

const UnreadProperty kUnreadProperties[] = {
    {"stroke-linejoin",
     {"miter", "round", "bevel", "miter-clip", "inherit", "initial", "unset"},
     "is drawn as miter"},
    {"stroke-linejoin",
     {"miter", "round", "bevel", "arcs", "inherit", "initial", "unset"},
     "is drawn as miter in PDF, PostScript and EPS"},
    {"font-variant-alternates",
     {"normal", "historical-forms", "inherit", "initial"},
     "is ignored: other forms of letters are chosen by font-feature-settings"},
    {"text-decoration-color",
     {"currentcolor", "currentColor", "inherit", "initial"},
     "is ignored: lines have the colour of their text"},
    {"text-underline-offset",
     {"auto", "inherit", "initial", "unset"},
     "is ignored: lines are where the font places them"},
    {"color-interpolation",
     {"sRGB", "auto", "inherit", "initial"},
     "counts for masks only: colours are mixed as sRGB"},
    {"inline-size",
     {"auto", "0", "inherit", "initial"},
     "is ignored: lines break only where they are written"},
    {"shape-inside",
     {"auto", "none", "inherit", "initial"},
     "is ignored: lines break only where they are written"},
};

/// Whether one of some words is a colour, other than that of text.
bool HasColour(std::string_view words) {
    bool has = words.find('(') != std::string_view::npos;
    svg2::ForEachWord(words, [&has](std::string_view word) {
        svg2::Colour colour;
        return !(has = has || (!svg2::EqualsIgnoringCase(word, "none") && svg2::ReadColour(word, colour)));
    });
    return has;
}

}  // namespace

void ForEachLossOf(std::string_view property, std::string_view value,
                   const std::function<void(const char* message)>& report) {
    for (const UnreadProperty& row : kUnreadProperties)
        if (row.name == property && !IsOneOf(value, row.harmless)) report(row.message);
    if (IsOneOf(property, {"alignment-baseline", "dominant-baseline"}) &&
        IsOneOf(value, {"top", "center", "bottom"}))
        report("is ignored: these values align text with a line box, which text in SVG does not have");
    if (property == "text-decoration" && HasColour(value))
        report("has a colour that is ignored: lines have the colour of their text");
    if (property == "font-size-adjust" && value.starts_with("ic-height"))
        report("is ignored: the size is not adjusted to the height of ideographs");
}
