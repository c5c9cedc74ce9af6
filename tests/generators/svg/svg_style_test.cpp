// SPDX-License-Identifier: Apache-2.0

// Shapes and their paint, as elements.

#include "generators/svg/svg_style.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/visualization/fonts/ORVFontFace.h"
#include "tests/generators/svg/drawn_svg.h"
#include "tests/support/named_rows.h"

namespace {

struct ShapeCase {
    const char* name;
    int (*draw)(ORVPrintGenerator& generator);
    const char* expected;
};
class SvgShapeTest : public testing::TestWithParam<ShapeCase> {};
TEST_P(SvgShapeTest, StatesWhatDiffersFromSvgsOwn) {
    DrawnSvg page;
    EXPECT_EQ(GetParam().draw(page.Get()), 1);
    EXPECT_EQ(page.Content(), GetParam().expected);
}

ORVPrintPath Corner() {
    ORVPrintPath path;
    path.MoveTo({1, 1});
    path.LineTo({5, 1});
    path.LineTo({5, 6});
    return path;
}

int Draw(ORVPrintGenerator& generator, const ORVPrintPath& path, const ORVPrintFill* fill,
         const ORVPrintStroke* stroke, const ORVMathAffine2D& map = {}) {
    return generator.DrawShape({path, map, fill, stroke});
}

INSTANTIATE_TEST_SUITE_P(
    Shape, SvgShapeTest,
    testing::Values(
        ShapeCase{"BlackRectangle", [](ORVPrintGenerator& g) { return FillRectangle(g, 0, 2, 3, 4); },
                  "<rect y=\"2\" width=\"3\" height=\"4\"/>\n"},
        ShapeCase{"ShortColour",
                  [](ORVPrintGenerator& g) {
                      return FillRectangle(g, 0, 0, 3, 4, {0x11, 0x22, 0xFF, 255});
                  },
                  "<rect fill=\"#12f\" width=\"3\" height=\"4\"/>\n"},
        ShapeCase{"LongColourAndOpacity",
                  [](ORVPrintGenerator& g) {
                      return FillRectangle(g, 0, 0, 3, 4, {1, 2, 0xAB, 51});
                  },
                  "<rect fill=\"#0102ab\" fill-opacity=\".2\" width=\"3\" height=\"4\"/>\n"},
        ShapeCase{"EvenOdd",
                  [](ORVPrintGenerator& g) {
                      ORVPrintFill fill;
                      fill.evenOdd = true;
                      return Draw(g, Corner(), &fill, nullptr);
                  },
                  "<path fill-rule=\"evenodd\" d=\"M1 1h4v5\"/>\n"},
        ShapeCase{"PlainStroke",
                  [](ORVPrintGenerator& g) {
                      const ORVPrintStroke stroke;
                      return Draw(g, Corner(), nullptr, &stroke);
                  },
                  "<path fill=\"none\" stroke=\"#000\" d=\"M1 1h4v5\"/>\n"},
        ShapeCase{"RichStroke",
                  [](ORVPrintGenerator& g) {
                      const double dashes[]{3.0, 1.5};
                      ORVPrintStroke stroke;
                      stroke.colour = {255, 0, 0, 51};
                      stroke.width = 0.25;
                      stroke.cap = ORVPrintStroke::Cap::kRound;
                      stroke.join = ORVPrintStroke::Join::kBevel;
                      stroke.dashes = dashes;
                      return Draw(g, Corner(), nullptr, &stroke);
                  },
                  "<path fill=\"none\" stroke=\"#f00\" stroke-width=\".25\" stroke-linecap=\"round\" "
                  "stroke-linejoin=\"bevel\" stroke-dasharray=\"3,1.5\" stroke-opacity=\".2\" d=\"M1 "
                  "1h4v5\"/>\n"},
        ShapeCase{"CutMiterWithCrispEdges",
                  [](ORVPrintGenerator& g) {
                      ORVPrintStroke stroke;
                      stroke.join = ORVPrintStroke::Join::kMiterClip;
                      stroke.miterLimit = 2.0;
                      stroke.isCrisp = true;
                      return Draw(g, Corner(), nullptr, &stroke);
                  },
                  "<path fill=\"none\" stroke=\"#000\" stroke-linejoin=\"miter-clip\" "
                  "stroke-miterlimit=\"2\" shape-rendering=\"crispEdges\" d=\"M1 1h4v5\"/>\n"},
        ShapeCase{"MiterLimit",
                  [](ORVPrintGenerator& g) {
                      ORVPrintStroke stroke;
                      stroke.miterLimit = 10.0;
                      return Draw(g, Corner(), nullptr, &stroke);
                  },
                  "<path fill=\"none\" stroke=\"#000\" stroke-miterlimit=\"10\" d=\"M1 1h4v5\"/>\n"},
        // Some readers draw the stroke only if a fill is stated, even a black one.
        ShapeCase{"Both",
                  [](ORVPrintGenerator& g) {
                      const ORVPrintFill fill;
                      const ORVPrintStroke stroke;
                      return Draw(g, RectanglePath(0, 0, 2, 2), &fill, &stroke);
                  },
                  "<rect fill=\"#000\" stroke=\"#000\" width=\"2\" height=\"2\"/>\n"},
        // Dashes start where the path starts, which is not where those of a rect element would.
        ShapeCase{"DashedRectangle",
                  [](ORVPrintGenerator& g) {
                      const double dashes[]{3.0};
                      ORVPrintStroke stroke;
                      stroke.dashes = dashes;
                      return Draw(g, RectanglePath(0, 0, 2, 2), nullptr, &stroke);
                  },
                  "<path fill=\"none\" stroke=\"#000\" stroke-dasharray=\"3\" d=\"M0 0h2v2H0z\"/>\n"},
        ShapeCase{"MapWithRoundPen",
                  [](ORVPrintGenerator& g) {
                      const ORVPrintStroke stroke;
                      return Draw(g, Corner(), nullptr, &stroke, {0.0, -2.0, 2.0, 0.0, 10.0, 0.0});
                  },
                  "<path fill=\"none\" stroke=\"#000\" stroke-width=\"2\" d=\"M8 2v8H-2\"/>\n"},
        ShapeCase{
            "MapWithFlatPen",
            [](ORVPrintGenerator& g) {
                const ORVPrintFill fill;
                const ORVPrintStroke stroke;
                return Draw(g, Corner(), &fill, &stroke, ORVMathAffine2D::Scaling(1.0, 4.0));
            },
            "<path d=\"M1 4h4v20\"/>\n"
            "<path fill=\"none\" stroke=\"#000\" stroke-width=\"4\" transform=\"matrix(.25 0 0 1 0 0)\" "
            "d=\"M4 4h16v20\"/>\n"},
        ShapeCase{"FarOffIsCut",
                  [](ORVPrintGenerator& g) {
                      ORVPrintPath path;
                      path.MoveTo({-1e9, 5.0});
                      path.LineTo({1e9, 5.0});
                      const ORVPrintStroke stroke;
                      return Draw(g, path, nullptr, &stroke);
                  },
                  "<path fill=\"none\" stroke=\"#000\" d=\"M-40000 5h80000\"/>\n"}),
    kNameOfRow);

/// A font face that has only a name and a weight.
class NamedFace final : public ORVFontFace {
public:
    explicit NamedFace(int weight) : ORVFontFace(WithWeight(weight)) {}
    unsigned int GetUnitsPerEm() const override { return 1000; }
    double GetAscent() const override { return 0.9; }
    double GetDescent() const override { return 0.2; }
    std::uint32_t GetGlyph(char32_t) const override { return 0; }
    double GetAdvance(std::uint32_t) const override { return 0.0; }
    bool DrawGlyph(std::uint32_t, double, ORVGlyphOutlineSink&) const override { return false; }
    ORVFontBytes GetTable(std::string_view) const override { return {}; }
    ORVFontSubset MakeSubset(const std::vector<std::uint32_t>&, std::string_view) const override {
        return {};
    }
    FT_FaceRec_* GetFreeTypeFace() const override { return nullptr; }

private:
    static Description WithWeight(int weight) {
        Description description;
        description.family = "Own";
        description.weight = weight;
        return description;
    }
};

// SVG states weights in hundreds from 100 to 900.
TEST(SvgFontTest, StatesTheNearestWeight) {
    struct Row {
        int weight;
        bool isBold;
        const char* stated;
    };
    for (const Row& row : {Row{400, false, ""}, Row{350, false, ""}, Row{449, false, ""},
                           Row{349, false, " font-weight=\"300\""}, Row{450, false, " font-weight=\"500\""},
                           Row{700, false, " font-weight=\"bold\""}, Row{680, false, " font-weight=\"bold\""},
                           Row{20, false, " font-weight=\"100\""}, Row{1000, false, " font-weight=\"900\""},
                           Row{400, true, " font-weight=\"bold\""}}) {
        std::string text;
        AppendSvgFont(text, NamedFace(row.weight), "", 10.0, row.isBold);
        EXPECT_EQ(text, " font-family=\"Own,sans-serif\" font-size=\"10\"" + std::string(row.stated))
            << row.weight;
    }
}

}  // namespace
