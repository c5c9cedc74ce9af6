// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/element_attributes.h"

#include <gtest/gtest.h>

#include <array>
#include <nlohmann/json.hpp>
#include <string>

#include "interpreters/svg/structure/walker.h"
#include "tests/support/built_model.h"
#include "tests/support/model_json.h"
#include "tests/support/sample_images.h"

namespace {

// Two values of every attribute that differ in effect, if the attribute has any.
struct SampleValues {
    const char* first;
    const char* second;
};
constexpr std::array<SampleValues, static_cast<std::size_t>(AttributeName::kCount)> kSamples{{
    {"middle", "hanging"},                              // alignment-baseline
    {"lime", "navy"},                                   // color
    {"31", "37"},                                       // cx
    {"31", "37"},                                       // cy
    {"M1,2 L30,40 5,60 Z", "M9,9 L1,7 3,3"},            // d
    {"none", "inline"},                                 // display
    {"3", "4"},                                         // dx
    {"3", "4"},                                         // dy
    {"none", "red"},                                    // fill
    {"0.3", "0.4"},                                     // fill-opacity
    {"evenodd", "nonzero"},                             // fill-rule
    {"monospace", "serif"},                             // font-family
    {"31", "37"},                                       // font-size
    {"italic", "normal"},                               // font-style
    {"bold", "100"},                                    // font-weight
    {"31", "37"},                                       // height
    {"e", "other"},                                     // id
    {"spacing", "spacingAndGlyphs"},                    // lengthAdjust
    {"3", "4"},                                         // letter-spacing
    {"url(#m)", "url(#n)"},                             // marker
    {"url(#m)", "url(#n)"},                             // marker-end
    {"31", "37"},                                       // markerHeight
    {"url(#m)", "url(#n)"},                             // marker-mid
    {"url(#m)", "url(#n)"},                             // marker-start
    {"31", "37"},                                       // markerWidth
    {"0.3", "0.4"},                                     // opacity
    {"31", "37"},                                       // pathLength
    {"translate(3)", "translate(4)"},                   // patternTransform
    {"1,2 30,40 5,60", "9,9 1,7 3,3"},                  // points
    {"31", "37"},                                       // r
    {"3", "4"},                                         // refX
    {"3", "4"},                                         // refY
    {"31", "37"},                                       // rotate
    {"31", "37"},                                       // rx
    {"31", "37"},                                       // ry
    {"none", "red"},                                    // stroke
    {"3 4", "5 6"},                                     // stroke-dasharray
    {"round", "square"},                                // stroke-linecap
    {"round", "bevel"},                                 // stroke-linejoin
    {"0.3", "0.4"},                                     // stroke-opacity
    {"3", "4"},                                         // stroke-width
    {"fill:none;stroke:red", "fill:blue;stroke:none"},  // style
    {"middle", "end"},                                  // text-anchor
    {"31", "37"},                                       // textLength
    {"3", "4"},                                         // tlv:text-version
    {"translate(3)", "translate(4)"},                   // transform
    {"0 0 31 37", "0 0 41 43"},                         // viewBox
    {"hidden", "visible"},                              // visibility
    {"31", "37"},                                       // width
    {"tb", "rl"},                                       // writing-mode
    {"3", "4"},                                         // x
    {"3", "4"},                                         // x1
    {"3", "4"},                                         // x2
    {"#d", ""},                                         // xlink:href
    {"new", "replace"},                                 // xlink:show
    {"3", "4"},                                         // y
    {"3", "4"},                                         // y1
    {"3", "4"},                                         // y2
}};

std::string AttributeText(AttributeName name, const std::string& value) {
    return " " + std::string(GetNameText(name)) + "='" + value + "'";
}

// Attributes that an element needs to be visible.
std::string NeededAttributes(ElementName element, SvgPlace place, AttributeName probed) {
    const struct {
        AttributeName name;
        const char* value;
    } needed[] = {
        {AttributeName::kId, "e"},
        {AttributeName::kCx, "50"},
        {AttributeName::kCy, "50"},
        {AttributeName::kD, "M1,1 L50,50 50,1 Z"},
        {AttributeName::kPoints, "1,1 50,50 50,1"},
        {AttributeName::kR, "20"},
        {AttributeName::kRx, "20"},
        {AttributeName::kRy, "10"},
        {AttributeName::kWidth, "150"},
        {AttributeName::kHeight, "90"},
        {AttributeName::kX2, "60"},
        {AttributeName::kY2, "70"},
        {AttributeName::kMarkerWidth, "20"},
        {AttributeName::kMarkerHeight, "20"},
    };
    std::string text;
    for (const auto& row : needed)
        if (row.name != probed) text += AttributeText(row.name, row.value);
    // "color" takes effect where paint refers to it, but paint would make a hidden element visible again.
    if (probed == AttributeName::kColor) text += " fill='currentColor' stroke='currentColor'";
    if (element == ElementName::kUse && probed != AttributeName::kXlinkHref) text += " xlink:href='#d'";
    // The viewBox is fitted to the size of a nested drawing.
    if (element == ElementName::kSvg && place == SvgPlace::kNested && probed != AttributeName::kViewBox)
        text += " viewBox='0 0 10 10'";
    return text;
}

std::string Content(ElementName element) {
    if (element == ElementName::kText) return "Text";
    // A marker is fitted by its content's bounding box before the content is restyled: only there do fonts of
    // definitions matter, and the effect depends on the installed fonts.
    const std::string text = element == ElementName::kMarker ? "" : "<text>T</text>";
    return "<rect width='9' height='8'/>" + text +
           "<path id='inner' d='M1,1 L9,9 8,1 7,3'/><polyline points='1,1 50,50 50,1'/>"
           "<rect width='5' height='6' fill='none' stroke='none'/>";
}

// The element in place, and in every context in which it can be referenced.
std::string DocumentWith(ElementName element, SvgPlace place, AttributeName probed,
                         const std::string& value) {
    const std::string name(GetNameText(element));
    const std::string attributes = NeededAttributes(element, place, probed) + AttributeText(probed, value);
    // Registers all colours of the samples, so that using one makes no difference by itself.
    const std::string colours = "<rect fill='lime'/><rect fill='navy'/><rect fill='red'/><rect fill='blue'/>";
    const std::string definitions =
        "<defs><g id='d'><rect width='3' height='4'/><text>T</text></g>"
        "<marker id='m'><circle r='2'/></marker><marker id='n'><circle r='3'/></marker></defs>";
    if (place == SvgPlace::kPage)
        return "<svg" + attributes + ">" + colours + definitions + Content(element) + "</svg>";
    const std::string uses =
        "<use xlink:href='#inner'/><use xlink:href='#e'/><use xlink:href='#e' width='60' height='70'/>"
        "<polyline fill='none' points='1,1 9,9' marker-end='url(#e)'/><rect fill='url(#e)'/>";
    return "<svg width='200' height='100'>" + colours + definitions + "<" + name + attributes + ">" +
           Content(element) + "</" + name + ">" + uses + "</svg>";
}

nlohmann::json ModelOf(const std::string& document) {
    const BuiltModel built(document, {.backend = Backend::kLight});
    return ModelToJson(built.GetModel(), built.GetResult());
}

void ExpectTableToHold(ElementName element, SvgPlace place) {
    const std::uint64_t table = GetEffectiveAttributes(element, place);
    for (unsigned i = 0; i < static_cast<unsigned>(AttributeName::kCount); ++i) {
        const auto name = static_cast<AttributeName>(i);
        const std::string second = kSamples[i].second;
        std::string first = kSamples[i].first;
        if (element == ElementName::kImage && name == AttributeName::kXlinkHref)
            first = "data:image/png;base64," + ToBase64(SamplePng(2, 2));
        const bool differs = ModelOf(DocumentWith(element, place, name, first)) !=
                             ModelOf(DocumentWith(element, place, name, second));
        EXPECT_EQ(HasEffect(table, name), differs)
            << GetNameText(name) << " on " << GetNameText(element) << "\n"
            << DocumentWith(element, place, name, first);
    }
}

TEST(ElementAttributesTest, HoldWhatMakesADifferenceAndNothingElse) {
    for (auto element = ElementName::kA; element <= ElementName::kUse;
         element = static_cast<ElementName>(static_cast<unsigned>(element) + 1)) {
        if (!HasHandler(element)) continue;
        ExpectTableToHold(element, SvgPlace::kNested);
    }
    ExpectTableToHold(ElementName::kSvg, SvgPlace::kPage);
}

TEST(ElementAttributesTest, AnElementWithoutAHandlerHasNone) {
    for (unsigned i = 0; i <= static_cast<unsigned>(ElementName::kUse); ++i) {
        const auto element = static_cast<ElementName>(i);
        EXPECT_EQ(GetEffectiveAttributes(element) != 0, HasHandler(element)) << GetNameText(element);
    }
}

}  // namespace
