// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/model/ORVPrtRectangleElt.h"
#include "tests/support/built_model.h"
#include "tests/support/model_json.h"
#include "tests/support/test_texts.h"

namespace {

nlohmann::json ModelOf(const std::string& document, Backend backend, bool embedded = false) {
    const BuiltModel built(document, {backend, embedded});
    return ModelToJson(built.GetModel(), built.GetResult());
}

TEST(ParityTest, TheExamplesHaveOneModel) {
    std::size_t compared = 0;
    for (const auto& entry : std::filesystem::directory_iterator(ORV_EXAMPLES_PATH)) {
        if (!entry.is_regular_file() || entry.path().extension() == ".cpp") continue;
        const std::string document = ReadAll(entry.path());
        EXPECT_EQ(DifferencesOf(ModelOf(document, Backend::kDom), ModelOf(document, Backend::kLight)), "")
            << entry.path();
        ++compared;
    }
    EXPECT_GE(compared, 8U);
}

// The only difference: for an absent attribute, DOM access fails, and light access gives an empty value.
// Without a "fill", only light access goes on to the stroke.
TEST(ParityTest, AnAbsentFillHidesTheStrokeFromTheDomAccessOnly) {
    const std::string document = Drawing(
        "<rect stroke='red' stroke-width='7' stroke-dasharray='1' fill-rule='evenodd' width='5' "
        "height='5'/>");
    const auto rectangle = [&](Backend backend) {
        const BuiltModel built(document, {backend});
        const auto& one = static_cast<const ORVPrtRectangleElt&>(*built.GetPage().GetChildren().front());
        return std::vector<double>{static_cast<double>(one.GetDrawStyle()),
                                   one.GetStrokeAttributes().GetStrokeWidth(),
                                   static_cast<double>(one.GetStrokeAttributes().GetStrokeType()),
                                   static_cast<double>(one.GetFillAttributes().GetFillRule())};
    };
    EXPECT_EQ(rectangle(Backend::kDom), (std::vector<double>{kDrawFill, 1.0, kLineSolid, kFillNonZero}));
    EXPECT_EQ(rectangle(Backend::kLight),
              (std::vector<double>{kDrawFillAndStroke, 7.0, kLineUserDash, kFillEvenOdd}));
}

rc::Gen<std::string> OneOf(std::vector<std::string> values) { return rc::gen::elementOf(std::move(values)); }

std::string RandomAttributes() {
    static const std::vector<std::vector<std::string>> kAttributes{
        {"id", "a", "b", "B", ""},
        {"x", "5", "10%", "1in", "q"},
        {"y", "7", "25%", "", "-3"},
        {"width", "20", "5mm", "50%"},
        {"height", "10", "2pc", "x"},
        {"r", "4", "10%"},
        {"points", "1 2 3 4", "1,2,x 3", "5"},
        {"d", "M1 2l3 4z", "m1 1c1 2 3 4 5 6", "M0 0A5 5 0 0 1 9 9"},
        {"stroke", "red", "none", "currentColor", "url(#a)"},
        {"stroke-width", "2", "1mm", "x"},
        {"stroke-dasharray", "1,2", "none", ""},
        {"opacity", "0.5", "2", "inherit"},
        {"color", "green", "#123", "x"},
        {"display", "none", "inline"},
        {"visibility", "visible", "hidden"},
        {"transform", "translate(1 2)", "rotate(30)scale(2)", ""},
        {"style", "fill:none;stroke:blue", "font-size:9", ";x", "letter-spacing:30", "opacity:.5"},
        {"xlink:href", "#a", "#B", "#c", "http://localhost/"},
        {"marker", "url(#a)", "b", "none "},
        {"viewBox", "0 0 10 10", "1,2", "0 0 5"},
        {"font-size", "20", "200%", "small"},
        {"letter-spacing", "2", "nornal", ""},
        {"text-anchor", "end", "middle"},
        {"tlv:text-version", "3", "-1"},
        {"markerWidth", "4"},
        {"refX", "2"},
    };
    std::string text = " fill='" + *OneOf({"red", "none", "url(#a)", "", "inherit"}) + "'";
    for (const std::vector<std::string>& row : kAttributes) {
        if (*rc::gen::inRange(0, 4) != 0) continue;
        const auto value = *rc::gen::inRange<std::size_t>(1, row.size());
        text += " " + row.front() + "='" + row[value] + "'";
    }
    return text;
}

std::string RandomContent(int depth) {
    std::string text;
    const int count = *rc::gen::inRange(0, 5);
    for (int i = 0; i < count; ++i) {
        const std::string name = *OneOf({"rect", "circle", "ellipse", "line", "polyline", "polygon", "path",
                                         "text", "image",  "g",       "a",    "defs",     "use",     "symbol",
                                         "svg",  "marker", "pattern", "desc", "title",    "unknown"});
        text += "<" + name + RandomAttributes() + ">";
        text += *OneOf({"", "", " words ", "<!-- note -->", "<![CDATA[ a & b ]]>", "<?go on?>"});
        if (depth < 4) text += RandomContent(depth + 1);
        text += "</" + name + ">" + *OneOf({"", "\n", "<!-- between -->"});
    }
    return text;
}

RC_GTEST_PROP(ParityTest, DocumentsThatStateTheirFillHaveOneModel, ()) {
    const std::string document = "<svg" + RandomAttributes() + " cx='3'>" + RandomContent(0) + "</svg>";
    const bool embedded = *rc::gen::arbitrary<bool>();
    const std::string differences = DifferencesOf(ModelOf(document, Backend::kDom, embedded),
                                                  ModelOf(document, Backend::kLight, embedded));
    RC_LOG() << document;
    RC_ASSERT(differences == "");
}

}  // namespace
