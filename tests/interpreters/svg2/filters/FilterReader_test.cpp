// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "tests/interpreters/svg2/call_sketch.h"

namespace {

struct Row {
    const char *name, *primitives, *steps;
};

/// The steps that these primitives result in, with a filter region of 0,0 to 10,10. Omits the names of
/// results, regions equal to that of the filter, and the colour space if it is linearRGB.
std::string StepsOf(const std::string& primitives, const std::string& attributes = {}) {
    const std::string sketch = SketchContent(
        "<filter id='f' filterUnits='userSpaceOnUse' x='0' y='0' width='10' height='10' " + attributes + ">" +
        primitives + "</filter><rect width='20' height='40' filter='url(#f)'/>");
    const std::string start =
        "filter filterUnits=\"userSpaceOnUse\" x=\"0\" y=\"0\" width=\"10\" height=\"10\">";
    if (!sketch.starts_with(start)) return sketch;
    std::string steps = sketch.substr(start.size(), sketch.find("</filter>") - start.size());
    const std::string whole = " x=\"0\" y=\"0\" width=\"10\" height=\"10\"";
    for (std::size_t at; (at = steps.find(whole)) != std::string::npos;) steps.erase(at, whole.size());
    for (std::size_t at; (at = steps.find(" result=\"")) != std::string::npos;)
        steps.erase(at, steps.find('"', at + 9) + 1 - at);
    return steps;
}

template <std::size_t kCount>
void Check(const Row (&rows)[kCount], const std::string& attributes = {}) {
    for (const Row& row : rows) EXPECT_EQ(StepsOf(row.primitives, attributes), row.steps) << row.name;
}

const std::string kFlood = "<feFlood flood-opacity=\"0\"/>";

TEST(FilterReaderTest, ReadsPrimitivesWithTheirDefaults) {
    Check({
        {"blur", "<feGaussianBlur stdDeviation='2 0'/>",
         "<feGaussianBlur in=\"SourceGraphic\" stdDeviation=\"2 0\"/>"},
        {"blur of nothing", "<feGaussianBlur/>",
         "<feGaussianBlur in=\"SourceGraphic\" stdDeviation=\"0 0\"/>"},
        {"negative blur on one axis", "<feGaussianBlur stdDeviation='3 -2'/>",
         "<feGaussianBlur in=\"SourceGraphic\" stdDeviation=\"3 0\"/>"},
        {"negative blur", "<feGaussianBlur stdDeviation='-3'/>",
         "<feGaussianBlur in=\"SourceGraphic\" stdDeviation=\"0 0\"/>"},
        {"three numbers", "<feGaussianBlur stdDeviation='3 2 1'/>",
         "<feGaussianBlur in=\"SourceGraphic\" stdDeviation=\"0 0\"/>"},
        {"offset", "<feOffset dx='3'/>", "<feOffset in=\"SourceGraphic\" dx=\"3\" dy=\"0\"/>"},
        {"flood", "<feFlood/>", "<feFlood flood-color=\"#000000\"/>"},
        {"flood's colour", "<feFlood style='color:red;flood-color:currentColor' flood-opacity='.5'/>",
         "<feFlood flood-color=\"#ff0000\" flood-opacity=\".501960784\"/>"},
        {"merge", "<feMerge><feMergeNode/><feMergeNode in='SourceAlpha'/></feMerge>",
         "<feMerge><feMergeNode in=\"SourceGraphic\"/><feMergeNode in=\"SourceAlpha\"/></feMerge>"},
        {"empty merge", "<feMerge/>", kFlood.c_str()},
        {"shadow", "<feDropShadow/>",
         "<feDropShadow in=\"SourceGraphic\" dx=\"2\" dy=\"2\" stdDeviation=\"2 2\" "
         "flood-color=\"#000000\"/>"},
        {"blend", "<feBlend in2='SourceAlpha' mode='hard-light'/>",
         "<feBlend in=\"SourceGraphic\" in2=\"SourceAlpha\" mode=\"hard-light\"/>"},
        {"unknown mode", "<feBlend mode='louder'/>",
         "<feBlend in=\"SourceGraphic\" in2=\"SourceGraphic\" mode=\"normal\"/>"},
        {"composite", "<feComposite operator='arithmetic' k2='.5'/>",
         "<feComposite in=\"SourceGraphic\" in2=\"SourceGraphic\" operator=\"arithmetic\" k1=\"0\" "
         "k2=\".5\" k3=\"0\" k4=\"0\"/>"},
        {"matrix of wrong length", "<feColorMatrix values='1 2 3'/>",
         "<feColorMatrix in=\"SourceGraphic\" values=\"1 0 0 0 0 0 1 0 0 0 0 0 1 0 0 0 0 0 1 0\"/>"},
        {"light", "<feColorMatrix type='luminanceToAlpha' values='7'/>",
         "<feColorMatrix in=\"SourceGraphic\" values=\"0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 .2125 .7154 .0721 "
         "0 0\"/>"},
        {"no saturation", "<feColorMatrix type='saturate' values='0'/>",
         "<feColorMatrix in=\"SourceGraphic\" values=\".213 .715 .072 0 0 .213 .715 .072 0 0 .213 "
         ".715 .072 0 0 0 0 0 1 0\"/>"},
        {"the last function counts",
         "<feComponentTransfer><feFuncR type='gamma' exponent='2'/><feFuncR type='linear' slope='3'/>"
         "</feComponentTransfer>",
         "<feComponentTransfer in=\"SourceGraphic\"><feFuncR type=\"linear\" slope=\"3\" intercept=\"0\"/>"
         "</feComponentTransfer>"},
        {"an empty table", "<feComponentTransfer><feFuncA type='table'/></feComponentTransfer>",
         "<feComponentTransfer in=\"SourceGraphic\"/>"},
        {"convolution", "<feConvolveMatrix order='1 2' kernelMatrix='1 2'/>",
         "<feConvolveMatrix in=\"SourceGraphic\" order=\"1 2\" kernelMatrix=\"1 2\" divisor=\"3\" bias=\"0\" "
         "targetX=\"0\" targetY=\"1\" edgeMode=\"duplicate\"/>"},
        {"sum of 0", "<feConvolveMatrix order='2 1' kernelMatrix='1 -1' divisor='0'/>",
         "<feConvolveMatrix in=\"SourceGraphic\" order=\"2 1\" kernelMatrix=\"1 -1\" divisor=\"1\" "
         "bias=\"0\" targetX=\"1\" targetY=\"0\" edgeMode=\"duplicate\"/>"},
        {"wrong length", "<feConvolveMatrix kernelMatrix='1 2'/>", kFlood.c_str()},
        {"order of 1.5", "<feConvolveMatrix order='1.5' kernelMatrix='1'/>", kFlood.c_str()},
        {"target outside", "<feConvolveMatrix order='1' kernelMatrix='1' targetX='1'/>", kFlood.c_str()},
        {"morphology", "<feMorphology radius='0 2' operator='dilate'/>",
         "<feMorphology in=\"SourceGraphic\" operator=\"dilate\" radius=\"1 2\"/>"},
        {"radius of 0", "<feMorphology radius='0'/>", "<feOffset in=\"SourceGraphic\"/>"},
        {"negative radius", "<feMorphology radius='-1 2'/>", "<feOffset in=\"SourceGraphic\"/>"},
        {"tile", "<feTile/>", "<feTile in=\"SourceGraphic\"/>"},
        {"turbulence", "<feTurbulence baseFrequency='.5' seed='-1.7' numOctaves='2'/>",
         "<feTurbulence baseFrequency=\".5 .5\" numOctaves=\"2\" seed=\"-1\"/>"},
        {"negative frequency", "<feTurbulence baseFrequency='-1'/>", kFlood.c_str()},
        {"displacement", "<feDisplacementMap in2='SourceAlpha' scale='4' xChannelSelector='R'/>",
         "<feDisplacementMap in=\"SourceGraphic\" in2=\"SourceAlpha\" scale=\"4\" xChannelSelector=\"R\" "
         "yChannelSelector=\"A\"/>"},
        {"no light", "<feDiffuseLighting/>", kFlood.c_str()},
        {"light", "<feDiffuseLighting><feDistantLight azimuth='3'/></feDiffuseLighting>",
         "<feDiffuseLighting in=\"SourceGraphic\" surfaceScale=\"1\" diffuseConstant=\"1\" "
         "lighting-color=\"#ffffff\"><feDistantLight azimuth=\"3\" elevation=\"0\"/></feDiffuseLighting>"},
        {"exponent out of range",
         "<feSpecularLighting specularExponent='129'><fePointLight/></feSpecularLighting>", kFlood.c_str()},
        {"spot",
         "<feSpecularLighting lighting-color='red'><feSpotLight "
         "limitingConeAngle='-9'/></feSpecularLighting>",
         "<feSpecularLighting in=\"SourceGraphic\" surfaceScale=\"1\" specularConstant=\"1\" "
         "specularExponent=\"1\" lighting-color=\"#ff0000\"><feSpotLight x=\"0\" y=\"0\" z=\"0\" "
         "pointsAtX=\"0\" pointsAtY=\"0\" pointsAtZ=\"0\" specularExponent=\"1\" limitingConeAngle=\"9\"/>"
         "</feSpecularLighting>"},
        {"unknown elements are passed over", "<feUnheard/><feTile/>", "<feTile in=\"SourceGraphic\"/>"},
    });
}

TEST(FilterReaderTest, InputsAreNamesSourcesOrThePreviousResult) {
    Check({
        {"previous", "<feFlood/><feTile/>", "<feFlood flood-color=\"#000000\"/><feTile in=\"r0\"/>"},
        {"unknown", "<feFlood/><feTile in='x'/>", "<feFlood flood-color=\"#000000\"/><feTile in=\"r0\"/>"},
        {"named", "<feFlood result='a'/><feFlood/><feTile in='a'/>",
         "<feFlood flood-color=\"#000000\"/><feFlood flood-color=\"#000000\"/><feTile in=\"r0\"/>"},
        {"the latest of a name", "<feFlood result='a'/><feFlood result='a'/><feFlood/><feTile in='a'/>",
         "<feFlood flood-color=\"#000000\"/><feFlood flood-color=\"#000000\"/><feFlood "
         "flood-color=\"#000000\"/><feTile in=\"r1\"/>"},
        {"others are the source", "<feFlood/><feTile in='BackgroundImage'/>",
         "<feFlood flood-color=\"#000000\"/><feTile in=\"SourceGraphic\"/>"},
    });
}

TEST(FilterReaderTest, ColoursAreLinearUnlessStated) {
    Check({
        {"own", "<feTile color-interpolation-filters='sRGB'/>",
         "<feTile in=\"SourceGraphic\" color-interpolation-filters=\"sRGB\"/>"},
        {"initial", "<feTile/>", "<feTile in=\"SourceGraphic\"/>"},
    });
    EXPECT_EQ(StepsOf("<feTile/>", "color-interpolation-filters='sRGB'"),
              "<feTile in=\"SourceGraphic\" color-interpolation-filters=\"sRGB\"/>");
}

TEST(FilterReaderTest, SubregionsAreTheRegionSideBySide) {
    Check({
        {"two sides", "<feFlood x='2' height='3'/>",
         "<feFlood flood-color=\"#000000\" x=\"2\" y=\"0\" width=\"8\" height=\"3\"/>"},
        {"percent of the viewport", "<feFlood width='5%'/>",
         "<feFlood flood-color=\"#000000\" x=\"0\" y=\"0\" width=\"5\" height=\"10\"/>"},
        {"none", "<feFlood width='0'/>", kFlood.c_str()},
        {"negative", "<feFlood height='-1'/>", kFlood.c_str()},
    });
    EXPECT_EQ(StepsOf("<feFlood x='.1' width='.2' y='1%'/><feOffset dx='.5' dy='.5'/>",
                      "primitiveUnits='objectBoundingBox'"),
              "<feFlood flood-color=\"#000000\" x=\"2\" y=\".4\" width=\"4\" height=\"9.6\"/>"
              "<feOffset in=\"r0\" dx=\"10\" dy=\"20\"/>");
}

TEST(FilterReaderTest, RegionsAndWholeFilters) {
    struct Whole {
        const char *name, *content, *calls;
    };
    const Whole kRows[] = {
        {"region of the box",
         "<filter id='f'><feTile/></filter><rect width='10' height='20' filter='url(#f)'/>",
         "filter filterUnits=\"userSpaceOnUse\" x=\"-1\" y=\"-2\" width=\"12\" height=\"24\"><feTile "
         "in=\"SourceGraphic\" x=\"-1\" y=\"-2\" width=\"12\" height=\"24\" result=\"r0\"/></filter>\n"
         "  0,0 10,20 fill #000000\n"},
        {"lost", "<rect width='1' height='1' filter='url(#none)'/>", "0,0 1,1 fill #000000\n"},
        {"of another kind", "<g id='f'/><rect width='1' height='1' filter='url(#f)'/>",
         "0,0 1,1 fill #000000\n"},
        {"without primitives", "<filter id='f'/><rect width='1' height='1' filter='url(#f)'/>", ""},
        {"without area",
         "<filter id='f' width='0'><feTile/></filter><rect width='1' height='1' "
         "filter='url(#f)'/>",
         ""},
        {"box without area", "<filter id='f'><feTile/></filter><g filter='url(#f)'/>", ""},
        {"none", "<rect width='1' height='1' filter='none'/>", "0,0 1,1 fill #000000\n"},
        {"unreadable", "<rect width='1' height='1' filter='blur(1%)'/>", "0,0 1,1 fill #000000\n"},
        {"function", "<rect width='1' height='1' filter='blur(2px)'/>",
         "filter filterUnits=\"userSpaceOnUse\" x=\"-1000\" y=\"-1000\" width=\"2000\" height=\"2000\">"
         "<feGaussianBlur in=\"SourceGraphic\" stdDeviation=\"2 2\" color-interpolation-filters=\"sRGB\" "
         "result=\"r0\"/></filter>\n  0,0 1,1 fill #000000\n"},
        {"template",
         "<filter id='a' href='#b' x='0'/><filter id='b' href='#a' filterUnits='userSpaceOnUse' x='5' y='0' "
         "width='9' height='9'><feTile/></filter><rect width='1' height='1' filter='url(#a)'/>",
         "filter filterUnits=\"userSpaceOnUse\" x=\"0\" y=\"0\" width=\"9\" height=\"9\"><feTile "
         "in=\"SourceGraphic\" x=\"0\" y=\"0\" width=\"9\" height=\"9\" result=\"r0\"/></filter>\n"
         "  0,0 1,1 fill #000000\n"},
        {"after clip and opacity",
         "<clipPath id='c'><rect width='3' height='3'/></clipPath><rect width='1' height='1' opacity='.5' "
         "clip-path='url(#c)' filter='opacity(1)'/>",
         "layer 0.5\n  clip path 0,0 3,3\n    filter filterUnits=\"userSpaceOnUse\" x=\"-1000\" y=\"-1000\" "
         "width=\"2000\" height=\"2000\"><feColorMatrix in=\"SourceGraphic\" values=\"1 0 0 0 0 0 1 0 0 0 0 "
         "0 1 0 0 0 0 0 1 0\" color-interpolation-filters=\"sRGB\" result=\"r0\"/></filter>\n"
         "      0,0 1,1 fill #000000\n"},
    };
    for (const Whole& row : kRows) EXPECT_EQ(SketchContent(row.content), row.calls) << row.name;
}

/// The sketch without its first line, which describes the filter.
std::string ContentOf(const std::string& content) {
    const std::string sketch = SketchContent(content);
    return sketch.substr(sketch.find('\n') + 1);
}

TEST(FilterReaderTest, ImagesAreInputs) {
    const std::string filter =
        "<filter id='f' filterUnits='userSpaceOnUse' x='0' y='0' width='50' height='50'>";
    const std::string rect = "<rect width='1' height='1' filter='url(#f)'/>";
    EXPECT_EQ(
        ContentOf("<defs><rect id='e' width='5' height='5' fill='red' transform='translate(1)'/></defs>" +
                  filter + "<feImage href='#e' x='10'/></filter>" + rect),
        "  input\n    11,0 16,5 fill #ff0000\n  0,0 1,1 fill #000000\n");
    EXPECT_EQ(ContentOf(filter + "<feImage href='#none'/></filter>" + rect),
              "  input\n  0,0 1,1 fill #000000\n");
    // An element that uses the filter is drawn without it when the filter refers to that element.
    EXPECT_EQ(ContentOf(filter + "<feImage href='#e'/></filter><rect id='e' width='1' height='1' "
                                 "filter='url(#f)'/>"),
              "  input\n    0,0 1,1 fill #000000\n  0,0 1,1 fill #000000\n");
}

}  // namespace
