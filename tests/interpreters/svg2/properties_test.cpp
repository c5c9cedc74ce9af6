// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <sstream>

#include "interpreters/svg2/css/properties.h"

namespace svg2 {
namespace {

void Put(std::ostream& out, const Colour& c) {
    out << int(c.red) << ',' << int(c.green) << ',' << int(c.blue) << ',' << c.opacity << ' ';
}

void Put(std::ostream& out, const Paint& p) {
    out << int(p.kind) << p.reference << int(p.fallback);
    Put(out, p.colour);
}

void Put(std::ostream& out, const ColourValue& v) {
    out << v.isCurrent;
    Put(out, v.colour);
}

void Put(std::ostream& out, const Length& l) { out << l.px << '+' << l.percent << "% "; }

/// All values of a style as one text.
std::string Written(const Style& s) {
    std::ostringstream out;
    Put(out, s.colour);
    Put(out, s.fill);
    Put(out, s.stroke);
    out << s.fillOpacity << ' ' << s.strokeOpacity << ' ' << s.fillIsEvenOdd << s.clipIsEvenOdd << ' ';
    Put(out, s.strokeWidth);
    out << int(s.cap) << int(s.join) << ' ' << s.miterLimit << ' ';
    if (s.dashes)
        for (const Length& dash : *s.dashes) Put(out, dash);
    Put(out, s.dashOffset);
    out << int(s.visibility) << s.markerStart << ';' << s.markerMid << ';' << s.markerEnd << ';';
    for (const PaintPart part : s.paintOrder) out << int(part);
    out << s.hasCrispEdges << int(s.imageRendering) << s.interpolatesLinear << s.filtersInterpolateLinear
        << ' ' << s.fontFamily << ' ' << s.fontSize << ' ' << s.fontWeight << s.isItalic << ' '
        << s.fontStretch << ' ' << s.fontVariants << s.hasKerning << ' ';
    Put(out, s.letterSpacing);
    Put(out, s.wordSpacing);
    out << int(s.textAnchor) << int(s.textTransform) << s.isRightToLeft << int(s.writingMode) << ' '
        << int(s.dominantBaseline) << ' ' << int(s.whiteSpace) << s.isDisplayed << ' ' << s.opacity << ' '
        << s.clipPath << ';' << s.mask << ';' << s.filter << ';' << int(s.blend) << s.isIsolated
        << s.hidesOverflow << s.overflowIsStated << ' ' << s.transformOrigin << ';' << s.transformBox << ';';
    for (const ColourValue* value : {&s.stopColour, &s.floodColour, &s.lightingColour, &s.backgroundColour})
        Put(out, *value);
    out << s.stopOpacity << ' ' << s.floodOpacity << ' ' << int(s.decorationLines) << ' '
        << int(s.decorationStyle) << ' ' << s.decorationThickness.value_or(svg2::Length{}).px << ' '
        << s.baselineShift << ';' << int(s.alignmentBaseline) << s.unicodeBidi << s.hasNonScalingStroke
        << s.isOpacityMask;
    return out.str();
}

struct Row {
    // `other` is not a valid value of the property; null if every text is valid.
    const char *name, *value, *other;
    bool isInherited;
};

// Values that differ from the initial ones.
constexpr Row kRows[] = {
    {"alignment-baseline", "middle", "wavy", false},
    {"background-color", "red", "reddish", false},
    {"baseline-shift", "super", nullptr, false},
    {"clip-path", "url(#a)", "a", false},
    {"clip-rule", "evenodd", "odd", true},
    {"color", "red", "1", true},
    {"color-interpolation", "linearRGB", "rgb", true},
    {"color-interpolation-filters", "sRGB", "rgb", true},
    {"direction", "rtl", "up", true},
    {"display", "none", nullptr, false},
    {"dominant-baseline", "hanging", "wavy", true},
    {"fill", "url(#a) red", "url(#a) b", true},
    {"fill", "none", "nothing", true},
    {"fill", "context-stroke", "context", true},
    {"fill-opacity", "50%", "half", true},
    {"fill-rule", "evenodd", "", true},
    {"filter", "blur(2px)", "blur", false},
    {"flood-color", "currentColor", "1", false},
    {"flood-opacity", ".5", "x", false},
    {"font-family", "Arial, 'B C'", nullptr, true},
    {"font-kerning", "none", "x", true},
    {"font-size", "2em", "big", true},
    {"font-size", "x-large", "x-big", true},
    {"font-stretch", "condensed", "0%", true},
    {"font-style", "oblique 10deg", "bent", true},
    {"font-variant", "small-caps", nullptr, true},
    {"font-variant-caps", "all-small-caps", nullptr, true},
    {"font-weight", "bold", "1001", true},
    {"font-weight", "350.4", "0", true},
    {"image-rendering", "pixelated", "x", true},
    {"isolation", "isolate", "x", false},
    {"kerning", "0", "x", true},
    {"letter-spacing", "2px", "x", true},
    {"lighting-color", "red", "1", false},
    {"marker-end", "url('#m')", "m", true},
    {"marker-mid", "url( #m )", "url(#m) x", true},
    {"marker-start", "url(#m)", "m", true},
    {"mask", "url(#m)", "m", false},
    {"mask-type", "alpha", "x", false},
    {"mix-blend-mode", "color-dodge", "x", false},
    {"opacity", "7%", "7px", false},
    {"overflow", "visible", "x", false},
    {"paint-order", "markers stroke", "stroke stroke", true},
    {"shape-rendering", "crispEdges", "x", true},
    {"stop-color", "red", "1", false},
    {"stop-opacity", "0", "", false},
    {"stroke", "#123", "#12", true},
    {"stroke-dasharray", "1, 2px 3%", "1 x", true},
    {"stroke-dashoffset", "-1", "x", true},
    {"stroke-linecap", "round", "arrow", true},
    {"stroke-linejoin", "bevel", "x", true},
    {"stroke-miterlimit", "1", ".9", true},
    {"stroke-opacity", "0.5", "0.5.5", true},
    {"stroke-width", "2", "-2", true},
    {"text-anchor", "middle", "centre", true},
    {"text-decoration", "underline line-through red", "wavy", false},
    {"text-decoration-line", "overline", "underline red", false},
    {"text-decoration-style", "dotted", "straight", false},
    {"text-decoration-thickness", "3px", "-1px", false},
    {"text-transform", "uppercase", "full-width", true},
    {"text-transform", "capitalize", "capitalize lowercase", true},
    {"text-transform", "lowercase", "", true},
    {"transform-box", "fill-box", nullptr, false},
    {"transform-origin", "1px 2px", nullptr, false},
    {"unicode-bidi", "embed", nullptr, false},
    {"vector-effect", "non-scaling-stroke", nullptr, false},
    {"visibility", "collapse", "x", true},
    {"white-space", "pre", "x", true},
    {"word-spacing", "1em", "x", true},
    {"writing-mode", "tb-rl", "x", true},
};

TEST(PropertyTest, EachTakesItsValuesAndNoOthers) {
    const Style initial;
    const PropertyContext context{initial, {}, false};
    for (const Row& row : kRows) {
        const Name name = *FindName(row.name);
        Style style;
        EXPECT_TRUE(SetProperty(name, row.value, context, style)) << row.name << " " << row.value;
        const std::string set = Written(style);
        EXPECT_NE(set, Written(initial)) << row.name;
        if (row.other) {
            EXPECT_FALSE(SetProperty(name, row.other, context, style)) << row.name << " " << row.other;
            EXPECT_EQ(Written(style), set) << row.name;
        }
    }
}

TEST(PropertyTest, EachTakesTheGeneralWords) {
    const Style initial;
    for (const Row& row : kRows) {
        const Name name = *FindName(row.name);
        Style parent;
        ASSERT_TRUE(SetProperty(name, row.value, {initial, {}, false}, parent)) << row.name;
        const PropertyContext context{parent, {}, false};
        EXPECT_EQ(IsInherited(name), row.isInherited) << row.name;
        Style style;
        ASSERT_TRUE(SetProperty(name, "Inherit", context, style)) << row.name;
        EXPECT_EQ(Written(style), Written(parent)) << row.name;
        // The default clipping of viewports is not a value that can be reset.
        if (name == svg2::Name::kOverflow) continue;
        ASSERT_TRUE(SetProperty(name, "initial", context, style)) << row.name;
        EXPECT_EQ(Written(style), Written(initial)) << row.name;
        ASSERT_TRUE(SetProperty(name, "unset", context, style)) << row.name;
        EXPECT_EQ(Written(style), Written(row.isInherited ? parent : initial)) << row.name;
        Style copy;
        CopyProperty(name, parent, copy);
        EXPECT_EQ(Written(copy), Written(parent)) << row.name;
    }
}

TEST(PropertyTest, FontSetsWhatItNamesAndResetsTheRest) {
    const Style initial;
    const struct {
        const char* text;
        bool isRead;
        double size;
        int weight;
        bool isItalic;
        const char* family;
    } kFonts[] = {
        {"12px Arial", true, 12, 400, false, "Arial"},
        {"italic bold 2em/1.5 'A B', serif", true, 24, 700, true, "'A B', serif"},
        {"normal small-caps 300 condensed 10pt/ 12pt x", true, 40.0 / 3.0, 300, false, "x"},
        {"large serif", true, 14.4, 400, false, "serif"},
        {"12px", false, 0, 0, false, ""},
        {"bold Arial", false, 0, 0, false, ""},
        {"-12px Arial", false, 0, 0, false, ""},
        {"", false, 0, 0, false, ""},
    };
    for (const auto& font : kFonts) {
        Style style;
        style.fontWeight = 900;
        style.isItalic = true;
        const PropertyContext context{initial, {}, false};
        ASSERT_EQ(SetProperty(Name::kFont, font.text, context, style), font.isRead) << font.text;
        if (!font.isRead) {
            EXPECT_EQ(style.fontWeight, 900) << font.text;
            continue;
        }
        EXPECT_NEAR(style.fontSize, font.size, 1e-9) << font.text;
        EXPECT_EQ(style.fontWeight, font.weight) << font.text;
        EXPECT_EQ(style.isItalic, font.isItalic) << font.text;
        EXPECT_EQ(style.fontFamily, font.family) << font.text;
        // `font` is not a presentation attribute.
        EXPECT_FALSE(SetProperty(Name::kFont, font.text, {initial, {}, true}, style)) << font.text;
    }
}

TEST(PropertyTest, WeightsAreBolderAndLighterThanTheParents) {
    constexpr int kWeights[][3] = {
        {100, 400, 100}, {400, 700, 100}, {600, 900, 400}, {800, 900, 700}, {950, 950, 700}};
    for (const auto& [parentWeight, bolder, lighter] : kWeights) {
        Style parent, style;
        parent.fontWeight = parentWeight;
        const PropertyContext context{parent, {}, false};
        ASSERT_TRUE(SetProperty(Name::kFontWeight, "bolder", context, style));
        EXPECT_EQ(style.fontWeight, bolder) << parentWeight;
        ASSERT_TRUE(SetProperty(Name::kFontWeight, "lighter", context, style));
        EXPECT_EQ(style.fontWeight, lighter) << parentWeight;
    }
}

TEST(PropertyTest, MarkerSetsAllThree) {
    const Style initial;
    Style style;
    ASSERT_TRUE(SetProperty(Name::kMarker, "url(#m)", {initial, {}, false}, style));
    EXPECT_EQ(style.markerStart, "m");
    EXPECT_EQ(style.markerMid, "m");
    EXPECT_EQ(style.markerEnd, "m");
    Style copy;
    CopyProperty(Name::kMarker, style, copy);
    EXPECT_EQ(Written(copy), Written(style));
    EXPECT_FALSE(SetProperty(Name::kMarker, "url(#m)", {initial, {}, true}, style));
}

}  // namespace
}  // namespace svg2
