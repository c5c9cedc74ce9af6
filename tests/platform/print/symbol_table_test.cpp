// SPDX-License-Identifier: Apache-2.0

// Content drawn at several places: when it is announced as a symbol, and how it is then drawn.

#include "platform/print/symbol_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/generators/drawing_calls.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/support/named_rows.h"

namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

int DrawAll(OnePage& page, RecordingGenerator& generator, const ORVPrintParameters& parameters = {}) {
    return ORVPrintModelRender(page.GetModel(), &generator, parameters).Draw();
}

/// A filled polygon with this number of points.
ORVRef<ORVPrtPolygonElt> Star(int points = 60) {
    std::vector<ORVMathPoint2D> corners;
    for (int i = 0; i < points; ++i)
        corners.push_back({static_cast<double>(i % 7), static_cast<double>(i % 5)});
    auto star = MakePoints<ORVPrtPolygonElt>(std::move(corners));
    star->SetDrawStyle(kDrawFill);
    return star;
}

ORVRef<ORVPrtGroupElt> Placed(const ORVRef<ORVPrtGraphicPrimitiveElt>& content,
                              const ORVPrtTransformAttributes& transform) {
    auto group = MakeContainer<ORVPrtGroupElt>({content});
    group->SetTransformAttributes(transform);
    return group;
}

/// Returns the lines recorded for the content of the pages, shapes without their points.
std::vector<std::string> PageLines(const RecordingGenerator& generator) {
    std::vector<std::string> lines;
    for (std::string line : generator.GetLines()) {
        if (line.starts_with("document") || line.starts_with("page") || line.starts_with("end page") ||
            line.starts_with("end document"))
            continue;
        lines.push_back(line.substr(0, line.find(" M")));
    }
    return lines;
}

/// Draws a page of these primitives and returns the lines recorded for it. Releases the arguments first,
/// because every reference to a primitive counts as a place.
template <class... Primitives>
std::vector<std::string> LinesOf(Primitives... primitives) {
    OnePage page;
    (page.Add(primitives), ...);
    ((primitives = nullptr), ...);
    RecordingGenerator generator;
    generator.TakeSymbols();
    EXPECT_EQ(DrawAll(page, generator), 1);
    return PageLines(generator);
}

TEST(SymbolTest, SharedContentIsDrawnOnceAndThenPlaced) {
    const auto content = MakeContainer<ORVPrtGroupElt>({Star(), MakeCircle(1.0, 1.0, 1.0)});
    EXPECT_THAT(LinesOf(Placed(content, Translation(10.0, 20.0)), Placed(content, Translation(40.0, 5.0))),
                ElementsAre("new symbol 1 [1 0 0 1 10 30]", "fill #000000", "fill #000000", "end symbol",
                            "symbol 1 [1 0 0 1 40 45]"));
}

TEST(SymbolTest, ContentComesInTheSymbolsCoordinates) {
    const auto content = Star();
    OnePage page;
    for (const double x : {10.0, 40.0}) page.Add(Placed(content, Translation(x, 20.0)));
    RecordingGenerator generator;
    generator.TakeSymbols();
    DrawAll(page, generator);
    // Mirrored like the page, but not translated.
    EXPECT_THAT(generator.GetDrawn(), ElementsAre(StartsWith("fill #000000 M0,0 L1,-1 L2,-2")));
}

TEST(SymbolTest, GeneratorsWithoutSymbolsGetPlainCallsAndAreAskedOnce) {
    const auto content = Star();
    OnePage shared, copied;
    for (const double x : {10.0, 40.0}) {
        shared.Add(Placed(content, Translation(x, 20.0)));
        copied.Add(Placed(Star(), Translation(x, 20.0)));
    }
    RecordingGenerator fromShared, fromCopied;
    EXPECT_EQ(DrawAll(shared, fromShared), 1);
    EXPECT_EQ(DrawAll(copied, fromCopied), 1);
    EXPECT_EQ(fromShared.GetText(), fromCopied.GetText());
    EXPECT_EQ(fromShared.GetAnnouncementCount(), 1U);
    EXPECT_EQ(fromCopied.GetAnnouncementCount(), 0U);
}

struct UnsharedCase {
    const char* name;
    ORVRef<ORVPrtGraphicPrimitiveElt> (*make)();
};
class UnsharedTest : public testing::TestWithParam<UnsharedCase> {};
TEST_P(UnsharedTest, IsNotAnnounced) {
    const auto content = GetParam().make();
    OnePage page;
    for (const double x : {10.0, 40.0}) page.Add(Placed(content, Translation(x, 20.0)));
    // A link to the group "there".
    const auto link = MakeContainer<ORVPrtGroupElt>({MakeCircle(1.0, 1.0, 1.0)});
    ORVPrintLinkURI uri;
    uri.SetElementId("there");
    ORVPrtGroupAttributes attributes;
    attributes.SetLinkURI(uri);
    link->SetGroupAttributes(attributes);
    page.Add(link);
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_EQ(generator.GetAnnouncementCount(), 0U) << generator.GetText();
}

ORVRef<ORVPrtGraphicPrimitiveElt> GroupWithin(void (*prepare)(ORVPrtGroupElt&)) {
    const auto inner = MakeContainer<ORVPrtGroupElt>({Star()});
    prepare(*inner);
    return MakeContainer<ORVPrtGroupElt>({inner});
}
INSTANTIATE_TEST_SUITE_P(
    Symbols, UnsharedTest,
    testing::Values(
        UnsharedCase{"LittleContent",
                     []() -> ORVRef<ORVPrtGraphicPrimitiveElt> { return MakeCircle(1, 1, 1); }},
        UnsharedCase{"LinkWithin",
                     [] {
                         return GroupWithin([](ORVPrtGroupElt& group) {
                             ORVPrintLinkURI uri;
                             uri.SetBaseURL("http://example.org/");
                             ORVPrtGroupAttributes attributes;
                             attributes.SetLinkURI(uri);
                             group.SetGroupAttributes(attributes);
                         });
                     }},
        UnsharedCase{"LinkTargetWithin",
                     [] { return GroupWithin([](ORVPrtGroupElt& group) { group.SetID("there"); }); }},
        UnsharedCase{
            "DescriptionWithin",
            [] { return GroupWithin([](ORVPrtGroupElt& group) { group.SetDescription("A tap"); }); }},
        UnsharedCase{"PatternWithin",
                     []() -> ORVRef<ORVPrtGraphicPrimitiveElt> {
                         const auto tile = PlainImage(2, 2, {1, 2, 3});
                         const auto star = Star();
                         ORVPrtFillAttributes fill;
                         fill.SetFillStyle(kFillPattern);
                         fill.SetFillPatternImage(tile.get());
                         star->SetFillAttributes(fill);
                         return MakeContainer<ORVPrtGroupElt>({star});
                     }}),
    kNameOfRow);

TEST(SymbolTest, IdentifiersWithinGoUnreportedThoseAroundStay) {
    const auto content = GroupWithin([](ORVPrtGroupElt& group) { group.SetID("inner"); });
    content->SetID("tap");
    EXPECT_THAT(LinesOf(Placed(content, Translation(10.0, 20.0)), Placed(content, Translation(40.0, 5.0))),
                ElementsAre("group #tap", "new symbol 1 [1 0 0 1 10 30]", "fill #000000", "end symbol",
                            "end group", "group #tap", "symbol 1 [1 0 0 1 40 45]", "end group"));
}

TEST(SymbolTest, SymbolsNest) {
    const auto star = MakeContainer<ORVPrtGroupElt>({Star()});
    const auto pair = MakeContainer<ORVPrtGroupElt>(
        {Placed(star, Translation(0.0, 0.0)), Placed(star, Translation(5.0, 0.0))});
    EXPECT_THAT(
        LinesOf(Placed(pair, Translation(10.0, 20.0)), Placed(pair, Translation(40.0, 5.0))),
        ElementsAre("new symbol 1 [1 0 0 1 10 30]", "new symbol 2 [1 0 0 1 0 0]", "fill #000000",
                    "end symbol", "symbol 2 [1 0 0 1 5 0]", "end symbol", "symbol 1 [1 0 0 1 40 45]"));
}

TEST(SymbolTest, PlacesThatAreTurnedOrLittleLargerShareTheSymbol) {
    const auto star = MakeContainer<ORVPrtGroupElt>({Star()});
    EXPECT_THAT(LinesOf(Placed(star, Translation(10.0, 20.0)), Placed(star, Matrix(0.0, -1.0, 1.0, 0.0)),
                        Placed(star, Matrix(1.5, 0.0, 0.0, 1.0))),
                ElementsAre("new symbol 1 [1 0 0 1 10 30]", "fill #000000", "end symbol",
                            "symbol 1 [0 1 -1 0 0 50]", "symbol 1 [1.5 0 0 1 0 50]"));
}

TEST(SymbolTest, PlacesOfOtherSizesGetSymbolsOfTheirOwn) {
    const auto star = MakeContainer<ORVPrtGroupElt>({Star()});
    EXPECT_THAT(LinesOf(Placed(star, Matrix(1.0, 0.0, 0.0, 1.0)), Placed(star, Matrix(3.0, 0.0, 0.0, 3.0)),
                        Placed(star, Matrix(1.0, 0.0, 0.0, 0.1))),
                ElementsAre(StartsWith("new symbol 1 [1 0 0 1"), "fill #000000", "end symbol",
                            StartsWith("new symbol 2 [1 0 0 1"), "fill #000000", "end symbol",
                            StartsWith("new symbol 3 [1 0 0 1"), "fill #000000", "end symbol"));
}

TEST(SymbolTest, ContentOfManySizesIsDrawnOutAfterSixteen) {
    OnePage page;
    {
        const auto star = MakeContainer<ORVPrtGroupElt>({Star()});
        for (double scale = 0.001; scale < 5000.0; scale *= 2.3)
            page.Add(Placed(star, Matrix(scale, 0.0, 0.0, scale)));
    }
    RecordingGenerator generator;
    generator.TakeSymbols();
    EXPECT_EQ(DrawAll(page, generator), 1);
    std::size_t symbols = 0;
    for (const std::string& line : generator.GetLines()) symbols += line.starts_with("new symbol") ? 1 : 0;
    EXPECT_EQ(symbols, 16U);
    EXPECT_EQ(generator.GetDrawn().size(), 19U);
}

TEST(SymbolTest, MapsWithoutUseAreNoSymbols) {
    const auto star = MakeContainer<ORVPrtGroupElt>({Star()});
    for (const auto& transform : {Matrix(1e5, 0.0, 0.0, 1e5), Matrix(1e-5, 0.0, 0.0, 1e-5),
                                  Matrix(1.0, 0.0, 0.0, 1e-5), Translation(1e6, 0.0)})
        EXPECT_THAT(LinesOf(Placed(star, transform), Placed(star, transform)),
                    Each(Not(HasSubstr("symbol"))));
}

TEST(SymbolTest, LinesThatAreSharedAreDrawnWithTheirNeighbours) {
    std::vector<ORVMathPoint2D> points;
    for (int i = 0; i < 61; ++i) points.push_back({static_cast<double>(i), 0.0});
    const auto line = MakePoints<ORVPrtPolyCubicBezierElt>(points);
    const auto next = MakePoints<ORVPrtPolylineElt>({{60.0, 0.0}, {60.0, 9.0}});
    const std::vector<std::string> lines =
        LinesOf(MakeContainer<ORVPrtGroupElt>({line, next}), MakeContainer<ORVPrtGroupElt>({line, next}));
    EXPECT_THAT(lines, ElementsAre("stroke #000000 w1", "stroke #000000 w1"));
    EXPECT_THAT(LinesOf(Placed(line, Translation(1.0, 1.0)), Placed(line, Translation(2.0, 2.0))),
                ElementsAre("new symbol 1 [1 0 0 1 1 49]", "stroke #000000 w1", "end symbol",
                            "symbol 1 [1 0 0 1 2 48]"));
}

TEST(SymbolTest, PagesOfOtherColoursGetSymbolsOfTheirOwn) {
    const auto star = Star();
    OnePage page;
    page.Add(Placed(star, Translation(1.0, 1.0)));
    page.Add(Placed(star, Translation(2.0, 1.0)));
    const ORVRef<ORVPrtImageElt> second(new ORVPrtImageElt);
    const auto colours = Make<ORVPrtColourTable>();
    unsigned int index = 0;
    colours->AddColour(7, 8, 9, index);
    second->SetColourTable(colours.get());
    second->SetSize(100.0, 50.0);
    second->AddChild(Placed(star, Translation(1.0, 1.0)).get());
    page.GetModel().AddImage(second.get());
    RecordingGenerator generator;
    generator.TakeSymbols();
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre(StartsWith("fill #000000"), StartsWith("fill #070809")));
}

TEST(SymbolTest, KeysOfLaterDrawingsDiffer) {
    RecordingGenerator generator;
    generator.TakeSymbols();
    for (int drawing = 0; drawing < 2; ++drawing) {
        const auto star = Star();
        OnePage page;
        for (const double x : {10.0, 40.0}) page.Add(Placed(star, Translation(x, 20.0)));
        EXPECT_EQ(DrawAll(page, generator), 1);
    }
    EXPECT_THAT(generator.GetText(), AllOf(HasSubstr("new symbol 1"), HasSubstr("new symbol 2")));
}

TEST(SymbolTest, SharingIsCountedInFullAgainstTheLimit) {
    // 4 to the power of 20 stars; with symbols, one star would be drawn.
    ORVRef<ORVPrtGraphicPrimitiveElt> content = Star();
    for (int level = 0; level < 20; ++level)
        content = MakeContainer<ORVPrtGroupElt>({content, content, content, content});
    OnePage page;
    page.Add(content);
    RecordingGenerator generator;
    generator.TakeSymbols();
    EXPECT_EQ(DrawAll(page, generator), ORVPrintModelRender::kTooManyPrimitives);
    EXPECT_THAT(generator.GetLines(), IsEmpty());
}

TEST(SymbolTest, SharingWithinTheLimitIsDrawnOnceALevel) {
    ORVRef<ORVPrtGraphicPrimitiveElt> content = Star();
    for (int level = 0; level < 9; ++level)
        content = MakeContainer<ORVPrtGroupElt>({content, content, content, content});
    OnePage page;
    page.Add(content);
    RecordingGenerator generator;
    generator.TakeSymbols();
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_LT(generator.GetLines().size(), 100U);
}

TEST(SymbolTest, FailuresEndTheDrawing) {
    const auto star = MakeContainer<ORVPrtGroupElt>({Star()});
    for (std::size_t call = 3; call <= 6; ++call) {
        OnePage page;
        for (const double x : {10.0, 40.0}) page.Add(Placed(star, Translation(x, 20.0)));
        RecordingGenerator generator;
        generator.TakeSymbols();
        generator.FailAt(call);
        EXPECT_EQ(DrawAll(page, generator), -99);
        EXPECT_THAT(generator.GetLines().back(), StartsWith("end document"));
        EXPECT_EQ(generator.GetLines().size(), call + 1);
    }
}

}  // namespace
