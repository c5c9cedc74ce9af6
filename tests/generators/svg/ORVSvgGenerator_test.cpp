#include "generators/svg/ORVSvgGenerator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "platform/xml/ORVLightXml.h"
#include "tests/generators/drawing_calls.h"
#include "tests/support/sample_images.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// A page that a test draws.
class SvgPage {
public:
    explicit SvgPage(double width = 90.0, double height = 90.0, const ORVPrintDocumentInfo& document = {}) {
        EXPECT_EQ(generator_.BeginDocument(document), 1);
        EXPECT_EQ(generator_.BeginPage(PageInfo(width, height)), 1);
    }
    SvgPage(const SvgPage&) = delete;
    SvgPage& operator=(const SvgPage&) = delete;

    ORVSvgGenerator& Get() { return generator_; }
    /// Ends the page, which must be well-formed. @return all of it
    std::string Finish() {
        EXPECT_EQ(generator_.EndPage(), 1);
        EXPECT_EQ(generator_.EndDocument(), 1);
        const std::string& text = output_.GetBytes();
        ORVLightXmlElement root;
        EXPECT_EQ(ORVLightXmlParser().Parse({text.data(), text.size()}, root), 1) << text;
        return text;
    }
    /// Ends the page. @return what stands between its head and its end
    std::string Content() {
        const std::string text = Finish();
        const std::size_t start = text.find("\">\n") + 3;
        return text.substr(start, text.rfind("</svg>") - start);
    }

private:
    ORVMemoryOutput output_;
    ORVSvgGenerator generator_{output_};
};

std::size_t Count(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
    return count;
}

TEST(ORVSvgGeneratorTest, PagesAreMeasuredInMillimetresAndUserUnits) {
    ORVMemoryOutput output;
    ORVSvgGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({"Set", 2}), 1);
    ORVPrintPageInfo page = PageInfo(90.0, 744.09);
    page.id = "p 1";
    page.title = "One & only";
    page.description = "said <so>";
    EXPECT_EQ(generator.BeginPage(page), 1);
    EXPECT_EQ(generator.EndPage(), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(1.5, 1e-3)), 1);
    EXPECT_EQ(generator.EndPage(), 1);
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_EQ(output.GetPartCount(), 2U);
    const std::string head =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" "
        "version=\"1.1\"";
    EXPECT_EQ(output.GetBytes(),
              head +
                  " id=\"p_1\" width=\"25.4mm\" height=\"209.998733mm\" viewBox=\"0 0 90 "
                  "744.09\">\n<title>One &amp; only</title>\n<desc>said &lt;so&gt;</desc>\n"
                  "</svg>\n" +
                  head +
                  " width=\".423333333mm\" height=\".000282222222mm\" viewBox=\"0 0 1.5 "
                  ".001\">\n<title>Set</title>\n</svg>\n");
}

struct ShapeCase {
    const char* name;
    int (*draw)(ORVPrintGenerator& generator);
    const char* expected;
};
class SvgShapeTest : public testing::TestWithParam<ShapeCase> {};
TEST_P(SvgShapeTest, StatesWhatDiffersFromSvgsOwn) {
    SvgPage page;
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
        ShapeCase{"MiterLimit",
                  [](ORVPrintGenerator& g) {
                      ORVPrintStroke stroke;
                      stroke.miterLimit = 10.0;
                      return Draw(g, Corner(), nullptr, &stroke);
                  },
                  "<path fill=\"none\" stroke=\"#000\" stroke-miterlimit=\"10\" d=\"M1 1h4v5\"/>\n"},
        // A stroke is looked at by all readers only where a fill is stated, even a black one.
        ShapeCase{"Both",
                  [](ORVPrintGenerator& g) {
                      const ORVPrintFill fill;
                      const ORVPrintStroke stroke;
                      return Draw(g, RectanglePath(0, 0, 2, 2), &fill, &stroke);
                  },
                  "<rect fill=\"#000\" stroke=\"#000\" width=\"2\" height=\"2\"/>\n"},
        // Dashes begin where the path does, which is not where those of a rect would.
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
    [](const auto& row) { return row.param.name; });

TEST(ORVSvgGeneratorTest, GroupsKeepIdentifiersTextsAndLinks) {
    SvgPage page;
    ORVSvgGenerator& generator = page.Get();
    ORVPrintGroup group, again, link, inner, place;
    group.id = "a b";
    group.description = "d<";
    again.id = "a b";
    link.linkURL = "http://x/?a=1&b=\"2\"";
    link.linkShow = 1;
    inner.linkElementId = "c";
    place.id = "q";
    place.linkElementId = "a b";
    for (const ORVPrintGroup* one : {&group, &again, &link, &inner, &place})
        EXPECT_EQ(generator.BeginGroup(*one), 1);
    EXPECT_EQ(FillRectangle(generator, 0, 0, 1, 1), 1);
    for (int i = 0; i < 5; ++i) EXPECT_EQ(generator.EndGroup(), 1);
    EXPECT_EQ(generator.BeginGroup(inner), 1);
    EXPECT_EQ(generator.EndGroup(), 1);
    EXPECT_NE(generator.EndGroup(), 1);
    EXPECT_EQ(page.Content(),
              "<g id=\"a_b\">\n<desc>d&lt;</desc>\n"
              "<a xlink:href=\"http://x/?a=1&amp;b=&quot;2&quot;\" xlink:show=\"new\" target=\"_blank\">\n"
              "<g id=\"q\">\n<rect width=\"1\" height=\"1\"/>\n</g>\n</a>\n</g>\n"
              "<a xlink:href=\"#c\">\n</a>\n");
}

TEST(ORVSvgGeneratorTest, LinksRunNothing) {
    for (const char* address :
         {"javascript:alert(1)", " Java\tScript:x", "VBSCRIPT:x", "data:text/html,x", "\x01javascript:x"}) {
        SvgPage page;
        ORVPrintGroup link;
        link.linkURL = address;
        EXPECT_EQ(page.Get().BeginGroup(link), 1);
        EXPECT_EQ(page.Get().EndGroup(), 1);
        EXPECT_EQ(page.Content(), "") << address;
    }
    for (const char* address : {"page.html?x=javascript:y", "mailto:a@b", "../javascript:x"}) {
        SvgPage page;
        ORVPrintGroup link;
        link.linkURL = address;
        EXPECT_EQ(page.Get().BeginGroup(link), 1);
        EXPECT_THAT(page.Content(), HasSubstr(address));
    }
}

TEST(ORVSvgGeneratorTest, OwnIdentifiersKeepClearOfTheDrawings) {
    const auto image = PlainImage(1, 1, {1, 2, 3});
    SvgPage page;
    ORVPrintGroup first, second;
    first.id = "orv-i1";
    second.id = "orv-i2";
    EXPECT_EQ(page.Get().BeginGroup(first), 1);
    EXPECT_EQ(page.Get().DrawImage({*image, {}}), 1);
    EXPECT_EQ(page.Get().BeginGroup(second), 1);
    const std::string text = page.Finish();
    EXPECT_EQ(Count(text, "id=\"orv-i1\""), 1U);
    EXPECT_EQ(Count(text, "id=\"orv-i2\""), 1U);
    EXPECT_THAT(text, HasSubstr("<image id=\"orv-i2\""));
}

TEST(ORVSvgGeneratorTest, ClipsToBoxes) {
    SvgPage page;
    ORVMathBox2D box;
    box.Add({1, 2});
    box.Add({11, 22});
    EXPECT_EQ(page.Get().BeginClip(box), 1);
    EXPECT_NE(page.Get().EndGroup(), 1);
    EXPECT_EQ(page.Get().BeginClip({}), 1);
    EXPECT_EQ(page.Get().EndClip(), 1);
    EXPECT_EQ(page.Get().EndClip(), 1);
    EXPECT_NE(page.Get().EndClip(), 1);
    EXPECT_EQ(
        page.Content(),
        "<clipPath id=\"orv-c1\"><path d=\"M1 2h10v20H1z\"/></clipPath>\n<g clip-path=\"url(#orv-c1)\">\n"
        "<clipPath id=\"orv-c2\"><path d=\"\"/></clipPath>\n<g clip-path=\"url(#orv-c2)\">\n</g>\n</g>\n");
}

TEST(ORVSvgGeneratorTest, SymbolsOfOneStyleAreWrittenOnce) {
    SvgPage page;
    ORVSvgGenerator& generator = page.Get();
    const int key = 0;
    const ORVMathAffine2D tenth = ORVMathAffine2D::Scaling(0.1, 0.1);
    EXPECT_EQ(generator.BeginSymbol({&key, tenth}), ORVPrintGenerator::kDrawSymbol);
    for (const double x : {0.0, 200.0})
        EXPECT_EQ(FillRectangle(generator, x, 0, 100.04, 100, {255, 0, 0, 255}), 1);
    EXPECT_EQ(generator.EndSymbol(), 1);
    EXPECT_NE(generator.EndSymbol(), 1);
    EXPECT_EQ(generator.BeginSymbol({&key, ORVMathAffine2D::Translation(7, 0) * tenth}),
              ORVPrintGenerator::kSymbolKnown);
    // So much larger, it needs more digits.
    EXPECT_EQ(generator.BeginSymbol({&key, ORVMathAffine2D::Scaling(10.0, 10.0)}),
              ORVPrintGenerator::kDrawSymbol);
    EXPECT_EQ(FillRectangle(generator, 0, 0, 100.0437, 100), 1);
    EXPECT_EQ(generator.EndSymbol(), 1);
    EXPECT_EQ(generator.BeginSymbol({&key, ORVMathAffine2D::Scaling(0.0, 1.0)}),
              ORVPrintGenerator::kNoSymbols);
    EXPECT_EQ(page.Content(),
              "<defs><g id=\"orv-s1\">\n<rect width=\"100.04\" height=\"100\"/>\n"
              "<rect x=\"200\" width=\"100.04\" height=\"100\"/>\n</g></defs>\n"
              "<use xlink:href=\"#orv-s1\" fill=\"#f00\" transform=\"matrix(.1 0 0 .1 0 0)\"/>\n"
              "<use xlink:href=\"#orv-s1\" fill=\"#f00\" transform=\"matrix(.1 0 0 .1 7 0)\"/>\n"
              "<defs><g id=\"orv-s2\">\n<rect width=\"100.0437\" height=\"100\"/>\n</g></defs>\n"
              "<use xlink:href=\"#orv-s2\" transform=\"matrix(10 0 0 10 0 0)\"/>\n");
}

TEST(ORVSvgGeneratorTest, SymbolsOutliveGroupsThatAreNoElements) {
    SvgPage page;
    ORVSvgGenerator& generator = page.Get();
    const int key = 0;
    ORVPrintGroup group;
    group.id = "same";
    // The second group has nothing to say, since the identifier is given.
    for (const int expected :
         {ORVPrintGenerator::kDrawSymbol, ORVPrintGenerator::kDrawSymbol, ORVPrintGenerator::kSymbolKnown}) {
        EXPECT_EQ(generator.BeginGroup(group), 1);
        EXPECT_EQ(generator.BeginSymbol({&key, {}}), expected);
        if (expected == ORVPrintGenerator::kDrawSymbol) {
            EXPECT_EQ(FillRectangle(generator, 0, 0, 4, 4), 1);
            EXPECT_EQ(generator.EndSymbol(), 1);
        }
        EXPECT_EQ(generator.EndGroup(), 1);
    }
    EXPECT_EQ(Count(page.Content(), "<defs>"), 2U);
}

// A reader may paint all that a use places alike.
TEST(ORVSvgGeneratorTest, SymbolsOfSeveralStylesStandInEveryPlace) {
    SvgPage page;
    ORVSvgGenerator& generator = page.Get();
    const int key = 0, innerKey = 0;
    for (const double x : {1.0, 2.0}) {
        EXPECT_EQ(generator.BeginSymbol({&key, ORVMathAffine2D::Translation(x, 0)}),
                  ORVPrintGenerator::kDrawSymbol);
        EXPECT_EQ(FillRectangle(generator, 0, 0, 4, 4, {255, 0, 0, 255}), 1);
        EXPECT_EQ(generator.BeginSymbol({&innerKey, {}}), ORVPrintGenerator::kDrawSymbol);
        EXPECT_EQ(FillRectangle(generator, 0, 0, 5, 5), 1);
        EXPECT_EQ(generator.EndSymbol(), 1);
        EXPECT_EQ(generator.EndSymbol(), 1);
    }
    const std::string content =
        "<rect fill=\"#f00\" width=\"4\" height=\"4\"/>\n<g>\n<rect width=\"5\" height=\"5\"/>\n</g>\n</g>\n";
    EXPECT_EQ(page.Content(), "<g transform=\"translate(1 0)\">\n" + content +
                                  "<g transform=\"translate(2 0)\">\n" + content);
}

TEST(ORVSvgGeneratorTest, LargeSymbolsAreNotHeldBack) {
    SvgPage page;
    const int key = 0;
    EXPECT_EQ(page.Get().BeginSymbol({&key, ORVMathAffine2D::Translation(1, 0)}),
              ORVPrintGenerator::kDrawSymbol);
    for (int i = 0; i < 50'000; ++i) EXPECT_EQ(FillRectangle(page.Get(), i % 90, 0, 1, 1), 1);
    EXPECT_EQ(page.Get().EndSymbol(), 1);
    const std::string text = page.Content();
    EXPECT_EQ(Count(text, "<rect "), 50'000U);
    EXPECT_THAT(text, StartsWith("<g transform=\"translate(1 0)\">\n<rect "));
    EXPECT_THAT(text, EndsWith("/>\n</g>\n"));
}

TEST(ORVSvgGeneratorTest, ImagesAreInsideAndOnlyOnce) {
    const std::string file = SampleJpeg(6, 4);
    const ORVRef<ORVPixelImage> jpeg(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0));
    ASSERT_TRUE(jpeg);
    const auto plain = PlainImage(3, 2, {1, 2, 3});
    SvgPage page;
    for (const double x : {0.0, 20.0}) {
        EXPECT_EQ(page.Get().DrawImage({*jpeg, {60.0, 0.0, 0.0, 40.0, x, 10.0}}), 1);
        EXPECT_EQ(page.Get().DrawImage({*plain, {3.0, 0.0, 0.0, 2.0, x, 0.0}}), 1);
    }
    const std::string text = page.Finish();
    EXPECT_EQ(Count(text, "<image"), 2U);
    EXPECT_EQ(Count(text, "<use"), 4U);
    EXPECT_THAT(text, HasSubstr("width=\"6\" height=\"4\" preserveAspectRatio=\"none\" "
                                "style=\"image-orientation:none\" xlink:href=\"data:image/jpeg;base64," +
                                ToBase64(file) + "\"/>"));
    EXPECT_THAT(text, HasSubstr("<use xlink:href=\"#orv-i1\" transform=\"matrix(10 0 0 10 20 10)\"/>"));
    EXPECT_THAT(text, HasSubstr("<use xlink:href=\"#orv-i2\"/>"));
    EXPECT_THAT(text, HasSubstr("data:image/png;base64,iVBORw0KGgo"));
}

TEST(ORVSvgGeneratorTest, SmallDefinitionsAreRepeatedWhereAGroupHidesThem) {
    const auto small = PlainImage(3, 2, {1, 2, 3}), large = PlainImage(100, 100, {1, 2, 3});
    SvgPage page;
    ORVPrintGroup group;
    for (const char* id : {"a", "b"}) {
        group.id = id;
        EXPECT_EQ(page.Get().BeginGroup(group), 1);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(page.Get().DrawImage({*small, {}}), 1);
            EXPECT_EQ(page.Get().DrawImage({*large, {}}), 1);
        }
        EXPECT_EQ(page.Get().EndGroup(), 1);
    }
    EXPECT_EQ(Count(page.Finish(), "<image"), 3U);
}

TEST(ORVSvgGeneratorTest, PatternsTileTheirImage) {
    const auto tile = PlainImage(2, 2, {9, 9, 9});
    SvgPage page;
    ORVPrintFill fill;
    fill.pattern = tile.get();
    fill.patternToPage = ORVMathAffine2D::Scaling(0.5, 0.5);
    fill.colour.opacity = 51;
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 5.0, 5.0);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    const std::string text = page.Finish();
    EXPECT_EQ(Count(text, "<pattern"), 1U);
    EXPECT_THAT(text,
                HasSubstr("<pattern id=\"orv-p1\" patternUnits=\"userSpaceOnUse\" width=\"2\" height=\"2\" "
                          "patternTransform=\"matrix(.5 0 0 .5 0 0)\"><image width=\"2\" height=\"2\" "));
    EXPECT_THAT(text, HasSubstr("<g fill=\"url(#orv-p1)\" fill-opacity=\".2\">"));
}

struct TextCase {
    const char* name;
    const char* text;
    ORVMathAffine2D toPage;
    int writingMode;
    double spacing, expansion;
    std::vector<std::string> expected;
};
class SvgTextTest : public testing::TestWithParam<TextCase> {};
TEST_P(SvgTextTest, StandsWhereItWasLaidOut) {
    const TextCase& row = GetParam();
    ORVTextStyle style;
    style.font = FindFontForAttribute("DejaVu Sans");
    ASSERT_TRUE(style.font);
    style.height = 10.0;
    style.writingMode = row.writingMode;
    style.extraSpacing = row.spacing;
    style.expansion = row.expansion;
    const ORVTextLayout layout = ORVLayoutText(row.text, style);
    const ORVPrintFill fill;
    SvgPage page;
    EXPECT_EQ(page.Get().DrawText({layout, row.text, row.toPage, &fill, nullptr, nullptr}), 1);
    const std::string text = page.Content();
    for (const std::string& expected : row.expected) EXPECT_THAT(text, HasSubstr(expected));
    EXPECT_EQ(text.empty(), row.expected.empty());
}

constexpr ORVMathAffine2D kUpright{1.0, 0.0, 0.0, -1.0, 20.0, 30.0};

INSTANTIATE_TEST_SUITE_P(
    Text, SvgTextTest,
    testing::Values(
        TextCase{"Plain",
                 "A<b",
                 kUpright,
                 0,
                 0.0,
                 1.0,
                 {"<text font-family=\"DejaVu Sans,sans-serif\" font-size=\"10\" x=\"20\" y=\"30\" "
                  "textLength=\"",
                  "\">A&lt;b</text>\n"}},
        TextCase{"Enlarged",
                 "A",
                 ORVMathAffine2D{3.0, 0.0, 0.0, -3.0, 20.0, 30.0},
                 0,
                 0.0,
                 1.0,
                 {"font-size=\"30\" x=\"20\" y=\"30\">A</text>\n"}},
        TextCase{"Turned",
                 "A",
                 ORVMathAffine2D{0.0, 2.0, 2.0, 0.0, 20.0, 30.0},
                 0,
                 0.0,
                 1.0,
                 {"font-size=\"20\" transform=\"matrix(0 1 -1 0 20 30)\">A</text>\n"}},
        TextCase{"Wide", "A", kUpright, 0, 0.0, 2.0, {"transform=\"matrix(2 0 0 1 20 30)\">A</text>\n"}},
        TextCase{"Spaced",
                 "WW",
                 kUpright,
                 0,
                 2.5,
                 1.0,
                 // Twice 9.888 wide, and the spacing after each.
                 {"letter-spacing=\"2.5\"", "textLength=\"24.775\""}},
        TextCase{"Blanks", " a  b", kUpright, 0, 0.0, 1.0, {" xml:space=\"preserve\"> a  b</text>"}},
        TextCase{"OnlyBlanks", "   ", kUpright, 0, 0.0, 1.0, {}},
        TextCase{"Controls",
                 "a\x01\x1F\x7F\xC2\x85"
                 "b",
                 kUpright,
                 0,
                 0.0,
                 1.0,
                 {">ab</text>"}},
        TextCase{"NoUtf8", "a\xFF", kUpright, 0, 0.0, 1.0, {">a\xEF\xBF\xBD</text>"}},
        TextCase{"RightToLeft",
                 "שלום",
                 kUpright,
                 1,
                 0.0,
                 1.0,
                 // It starts at its right end.
                 {"direction=\"rtl\" writing-mode=\"rl\" x=\"42.129\" y=\"30\" "
                  "textLength=\"22.129\">שלום</text>"}},
        TextCase{"Mixed", "a שלום b", kUpright, 0, 0.0, 1.0, {">a </text>", ">שלום</text>", ">b</text>"}},
        // Letters below each other, each an element.
        TextCase{"Vertical", "AB", kUpright, 2, 0.0, 1.0, {">A</text>\n<text x=\"16", ">B</text>\n"}}),
    [](const auto& row) { return row.param.name; });

TEST(ORVSvgGeneratorTest, TextIsClippedAndStroked) {
    const ORVTextLayout layout = ORVLayoutText("clip", {});
    const ORVPrintPath clip = RectanglePath(0, 0, 5, 5);
    ORVPrintStroke stroke;
    stroke.width = 0.5;
    SvgPage page;
    EXPECT_EQ(page.Get().DrawText({layout, "clip", {2.0, 0.0, 0.0, -2.0, 1.0, 9.0}, nullptr, &stroke, &clip}),
              1);
    const std::string text = page.Content();
    EXPECT_THAT(text,
                HasSubstr("<path d=\"M0 0h5v5H0z\"/></clipPath>\n<g clip-path=\"url(#orv-c1)\">\n<text "));
    EXPECT_THAT(text, HasSubstr(" fill=\"none\" stroke=\"#000\" x=\"1\" y=\"9\""));
    EXPECT_THAT(text, EndsWith("</text>\n</g>\n"));
}

TEST(ORVSvgGeneratorTest, SlantedFacesAreNamed) {
    ORVTextStyle style;
    style.font = FindFontForAttribute("Liberation Serif Italic");
    ASSERT_TRUE(style.font);
    style.weight = 26;
    SvgPage page;
    EXPECT_EQ(WriteText(page.Get(), "x", 1, 9, style), 1);
    EXPECT_THAT(
        page.Content(),
        HasSubstr("font-family=\"LiberationSerif-BoldItalic,Liberation Serif,serif\" font-size=\"12\" "
                  "font-style=\"italic\" font-weight=\"bold\""));
}

TEST(ORVSvgGeneratorTest, WhatIsFarOffOrFlatDoesNotDisturb) {
    const double huge = std::numeric_limits<double>::max();
    const auto image = PlainImage(1, 1, {1, 2, 3});
    const double dashes[]{1e-30, 1e-30};
    const ORVPrintFill fill;
    ORVPrintStroke stroke;
    ORVPrintPath line;
    line.MoveTo({-huge, 5.0});
    line.LineTo({huge, 5.0});
    line.CubicTo({huge, huge}, {-huge, huge}, {0.0, 0.0});
    const ORVTextLayout layout = ORVLayoutText("far", {});
    SvgPage page;
    for (const double scale : {0.0, 1e-300, 1e-29, 1e-9, 1.0, 1e29, 1e300, std::nan("")})
        for (const ORVMathAffine2D& map :
             {ORVMathAffine2D::Scaling(scale, scale), ORVMathAffine2D::Scaling(1.0, scale),
              ORVMathAffine2D::Translation(scale, -scale)}) {
            stroke.width = scale > 0.0 ? scale : 1.0;
            stroke.dashes = scale < 1.0 ? std::span<const double>(dashes) : std::span<const double>();
            EXPECT_EQ(page.Get().DrawShape({line, map, &fill, &stroke}), 1);
            EXPECT_EQ(page.Get().DrawText({layout, "far", map, &fill, &stroke, &line}), 1);
            EXPECT_EQ(page.Get().DrawImage({*image, map}), 1);
            const int result = page.Get().BeginSymbol({&map, map});
            if (result == ORVPrintGenerator::kDrawSymbol) {
                EXPECT_EQ(page.Get().DrawShape({line, map, &fill, &stroke}), 1);
                EXPECT_EQ(page.Get().EndSymbol(), 1);
            }
        }
    const std::string text = page.Finish();
    for (const char* wrong : {"nan", "inf", "e+", "e-0", "e-1", "e-2"})
        EXPECT_THAT(text, Not(HasSubstr(wrong)));
}

TEST(ORVSvgGeneratorTest, RefusesPagesBeyondMeasure) {
    ORVMemoryOutput output;
    ORVSvgGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(2e6, 10.0, 7)), kPageTooLarge);
    EXPECT_THAT(generator.GetError(), HasSubstr("page 7"));
    EXPECT_NE(FillRectangle(generator, 0, 0, 1, 1), 1);
}

/// Takes some bytes, then no more.
class ShortOutput final : public ORVOutput {
public:
    int BeginPart() override { return 1; }
    int Write(const void* /*bytes*/, std::size_t size) override {
        written_ += size;
        return written_ > 1000 ? Fail("full") : 1;
    }
    int EndPart() override { return 1; }
    int Commit() override { return 1; }

private:
    std::size_t written_ = 0;
};

TEST(ORVSvgGeneratorTest, OutputThatFailsIsNoticed) {
    ShortOutput output;
    ORVSvgGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(90.0, 90.0)), 1);
    int result = 1;
    for (int i = 0; i < 100'000 && result == 1; ++i)
        result = FillRectangle(generator, i % 100, 0, 1, 1, {static_cast<std::uint8_t>(i % 2), 0, 0, 255});
    EXPECT_EQ(result, kOutputFailed);
    EXPECT_EQ(generator.EndDocument(), kOutputFailed);
}

}  // namespace
