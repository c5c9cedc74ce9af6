// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintModelRender.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "platform/print/ORVPrintParameters.h"
#include "tests/platform/print/drawn_page.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ModelRenderTest, FramesPagesAndDocument) {
    OnePage page;
    page.GetPage().SetTitle("Plan");
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_EQ(generator.GetText(), "document \"Plan\" 1\npage 1 100x50\nend page\nend document\n");
}

TEST(ModelRenderTest, YPointsDownFromTheUpperLeftCorner) {
    EXPECT_THAT(Drawn({MakeRectangle(10.0, 50.0, 20.0, 40.0)}),
                ElementsAre("fill #000000 M10,0 L20,0 L20,10 L10,10 Z"));
}

TEST(ModelRenderTest, PageOriginIsTheLowerLeftCorner) {
    OnePage page;
    page.GetPage().SetOrigin({5.0, -20.0});
    page.Add(MakeLine(5.0, -20.0, 105.0, 30.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L100,0"));
}

TEST(ModelRenderTest, PageMatrixThatIsNoNumberCountsAsIdentity) {
    OnePage page;
    page.GetPage().SetMatrix({std::nan(""), 0.0, 0.0, std::nan("")});
    page.Add(MakeLine(0.0, 0.0, 1.0, 0.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L1,50"));
}

TEST(ModelRenderTest, PageMatrixScales) {
    OnePage page;
    page.GetPage().SetMatrix({2.0, 0.0, 0.0, 2.0});
    page.Add(MakeLine(0.0, 0.0, 10.0, 5.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L20,40"));
}

TEST(ModelRenderTest, DeepTreesCostNoStack) {
    ORVRef<ORVPrtGraphicPrimitiveElt> tree = MakeLine(0.0, 50.0, 1.0, 50.0);
    for (int i = 0; i < 100'000; ++i) tree = MakeContainer<ORVPrtGroupElt>({tree});
    EXPECT_THAT(Drawn({tree}), ElementsAre("stroke #000000 w1 M0,0 L1,0"));
}

TEST(ModelRenderTest, LimitCountsSharedPrimitivesEachTimeBeforeOutputBegins) {
    const auto shared = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    const auto group = MakeContainer<ORVPrtGroupElt>({shared, shared, shared, shared});
    group->SetID("g");
    OnePage page;
    page.Add(group);
    ORVPrintParameters parameters;
    parameters.SetDrawLimit(5);
    RecordingGenerator enough;
    EXPECT_EQ(DrawAll(page, enough, parameters), 1);
    EXPECT_EQ(enough.GetDrawn().size(), 4U);

    parameters.SetDrawLimit(4);
    RecordingGenerator tooFew;
    EXPECT_EQ(DrawAll(page, tooFew, parameters), ORVPrintModelRender::kTooManyPrimitives);
    EXPECT_EQ(tooFew.GetText(), "");
}

TEST(ModelRenderTest, PageWithoutAreaBeginsNoOutput) {
    for (const double width : {0.0, -5.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        OnePage page;
        page.GetPage().SetSize(width, 10.0);
        RecordingGenerator generator;
        EXPECT_EQ(DrawAll(page, generator), ORVPrintModelRender::kPageWithoutArea);
        EXPECT_THAT(generator.GetLines(), IsEmpty());
    }
}

/// Draws a document with pages of these widths. Returns the number of pages drawn, then the number and width
/// of each; empty if nothing was drawn.
std::string DrawnWidths(const std::vector<double>& widths, int expectedResult,
                        const ORVPrintParameters& parameters = {}) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    for (const double width : widths) {
        const auto page = Make<ORVPrtImageElt>();
        page->SetSize(width, 1.0);
        model->AddImage(page.get());
    }
    RecordingGenerator generator;
    EXPECT_EQ(ORVPrintModelRender(*model, &generator, parameters).Draw(), expectedResult);
    std::string text = generator.GetText();
    for (const char* rest : {"document \"\" ", "x1\nend page\n", "end document\n"})
        for (std::size_t at = text.find(rest); at != text.npos; at = text.find(rest))
            text.erase(at, strlen(rest));
    for (char& c : text)
        if (c == '\n') c = ';';
    return text;
}

TEST(ModelRenderTest, PagesWithoutAreaArePassedOverAndTold) {
    constexpr int kIncomplete = ORVPrintModelRender::kPageWithoutArea;
    EXPECT_EQ(DrawnWidths({10.0, 20.0}, 1), "2;page 1 10page 2 20");
    EXPECT_EQ(DrawnWidths({10.0, 0.0, 30.0}, kIncomplete), "2;page 1 10page 2 30");
    EXPECT_EQ(DrawnWidths({0.0, -1.0, std::nan(""), 30.0}, kIncomplete), "1;page 1 30");
    EXPECT_EQ(DrawnWidths({0.0, 0.0}, kIncomplete), "");
}

TEST(ModelRenderTest, PagesWithoutAreaThatWereAskedForEndTheDrawing) {
    ORVPrintParameters parameters;
    parameters.SetPages({1, 2});
    EXPECT_EQ(DrawnWidths({10.0, 0.0}, ORVPrintModelRender::kPageWithoutArea, parameters), "");
    parameters.SetPages({1});
    EXPECT_EQ(DrawnWidths({10.0, 0.0}, 1, parameters), "1;page 1 10");
}

TEST(ModelRenderTest, OutputThatCannotBeClosedCountsMoreThanAPageWithoutArea) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    for (const double width : {0.0, 10.0}) {
        const auto page = Make<ORVPrtImageElt>();
        page->SetSize(width, 1.0);
        model->AddImage(page.get());
    }
    RecordingGenerator generator;
    generator.FailAt(4);  // the end of the document
    EXPECT_EQ(ORVPrintModelRender(*model, &generator, {}).Draw(), -99);
}

TEST(ModelRenderTest, GeneratorsFailureEndsTheDrawing) {
    for (std::size_t call = 2; call <= 4; ++call) {
        OnePage page;
        page.Add(MakeRectangle(0.0, 0.0, 1.0, 1.0));
        RecordingGenerator generator;
        generator.FailAt(call);
        EXPECT_EQ(DrawAll(page, generator), -99);
        EXPECT_EQ(generator.GetLines().size(), call + 1);
        EXPECT_EQ(generator.GetLines().back(), "end document failed");
    }
    OnePage page;
    RecordingGenerator generator;
    generator.FailAt(1);
    EXPECT_EQ(DrawAll(page, generator), -99);
    EXPECT_EQ(generator.GetLines().size(), 1U);  // no end without a beginning
}

/// A model of three pages, 10, 20 and 30 wide.
class ThreePagesTest : public testing::Test {
protected:
    ThreePagesTest() {
        for (const double width : {10.0, 20.0, 30.0}) {
            const auto page = Make<ORVPrtImageElt>();
            page->SetSize(width, 1.0);
            model_->AddImage(page.get());
        }
    }
    ORVRef<ORVPrtModel> model_{new ORVPrtModel};
    RecordingGenerator generator_;
    ORVPrintParameters parameters_;
};

TEST_F(ThreePagesTest, OnePageIsDrawnByNumber) {
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(2), 1);
    EXPECT_EQ(generator_.GetText(), "document \"\" 1\npage 1 20x1\nend page\nend document\n");
}

TEST_F(ThreePagesTest, PageThatIsNotThereDrawsNothing) {
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(4), 0);
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(0), 0);
    EXPECT_THAT(generator_.GetLines(), IsEmpty());
}

TEST_F(ThreePagesTest, ParametersChooseAndOrderPages) {
    parameters_.SetPages({3, 1, 9});
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(), 1);
    EXPECT_EQ(generator_.GetText(),
              "document \"\" 2\npage 1 30x1\nend page\npage 2 10x1\nend page\nend document\n");
}

TEST_F(ThreePagesTest, InspectorSeesTheModelFirst) {
    class Counter final : public ORVPrintModelInspector {
    public:
        void Inspect(const ORVPrtModel& model) override { pages = model.GetImages()->size(); }
        std::size_t pages = 0;
    } counter;
    parameters_.SetModelInspector(&counter);
    EXPECT_EQ(ORVPrintModelRender(*model_, nullptr, parameters_).Draw(), 1);
    EXPECT_EQ(counter.pages, 3U);
}

TEST_F(ThreePagesTest, WithoutGeneratorNothingIsDone) {
    EXPECT_EQ(ORVPrintModelRender(*model_, nullptr, parameters_).Draw(), 0);
}

/// A page of long and short outlines, some of them shared. Only the page holds references to them.
class ModelTakenApartTest : public testing::Test {
protected:
    ModelTakenApartTest() {
        std::vector<ORVMathPoint2D> points;
        for (int i = 0; i < 1024; ++i) points.push_back({static_cast<double>(i % 100), i % 2 * 40.0});
        const auto add = [this](const auto& primitive) {
            page_.Add(primitive);
            return primitive.get();
        };
        long_ = add(MakePoints<ORVPrtPolylineElt>(points));
        polygon_ = add(MakePoints<ORVPrtPolygonElt>(points));
        short_ = add(MakePoints<ORVPrtPolylineElt>({points.begin(), points.end() - 1}));
        const auto figure = Make<ORVPrtClosedFigureElt>();
        {
            const auto region = Make<ORVPrtClosedFigureRegionElt>();
            const auto piece = MakePoints<ORVPrtPolylineElt>(points);
            inFigure_ = piece.get();
            region->AddChild(piece.get());
            figure->AddChild(region.get());
        }
        page_.Add(figure);
        const auto group = Make<ORVPrtGroupElt>();
        {
            const auto piece = MakePoints<ORVPrtPolylineElt>(points);
            inShared_ = piece.get();
            group->AddChild(piece.get());
        }
        page_.Add(group);
        page_.Add(group);
        const auto twice = MakePoints<ORVPrtPolylineElt>(points);
        shared_ = twice.get();
        page_.Add(twice);
        page_.Add(twice);
    }

    std::string Draw() {
        RecordingGenerator generator;
        EXPECT_EQ(DrawAll(page_, generator), 1);
        return generator.GetText();
    }
    /// Draws the model for the last time, so that drawing may take it apart.
    std::string DrawAway(const ORVPrintParameters& parameters = {}) {
        RecordingGenerator generator;
        EXPECT_EQ(ORVPrintModelRender(std::move(page_.GetModel()), &generator, parameters).Draw(), 1);
        return generator.GetText();
    }

    OnePage page_;
    const ORVPrtPolylineElt *long_, *short_, *inFigure_, *inShared_, *shared_;
    const ORVPrtPolygonElt* polygon_;
};

TEST_F(ModelTakenApartTest, GivesBackWhatIsLongAndDrawnOnce) {
    const std::string drawn = Draw();
    EXPECT_EQ(DrawAway(), drawn);
    EXPECT_THAT(long_->GetPoints(), IsEmpty());
    EXPECT_THAT(polygon_->GetPoints(), IsEmpty());
    EXPECT_THAT(inFigure_->GetPoints(), IsEmpty());
    EXPECT_THAT(short_->GetPoints(), testing::SizeIs(1023));
    EXPECT_THAT(inShared_->GetPoints(), testing::SizeIs(1024));
    EXPECT_THAT(shared_->GetPoints(), testing::SizeIs(1024));
}

TEST_F(ModelTakenApartTest, OtherPrintsKeepEverything) {
    Draw();
    EXPECT_THAT(long_->GetPoints(), testing::SizeIs(1024));
    EXPECT_THAT(inFigure_->GetPoints(), testing::SizeIs(1024));
}

TEST_F(ModelTakenApartTest, PageThatIsDrawnTwiceKeepsEverything) {
    ORVPrintParameters parameters;
    parameters.SetPages({1, 1});
    DrawAway(parameters);
    EXPECT_THAT(long_->GetPoints(), testing::SizeIs(1024));
}

TEST(ModelRenderTest, LinesThatMeetTheirStartAreClosedUnlessTheyAreOneEdge) {
    struct Row {
        std::vector<ORVMathPoint2D> points;
        bool isClosed;
    };
    for (const Row& row :
         {Row{{{5, 5}, {5, 5}}, false}, Row{{{5, 5}, {9, 5}}, false}, Row{{{5, 5}, {9, 5}, {5, 5}}, true},
          Row{{{5, 5}, {9, 5}, {9, 9}, {5, 5}}, true}, Row{{{5, 5}, {9, 5}, {9, 9}, {5, 6}}, false}}) {
        OnePage page;
        page.Add(MakePoints<ORVPrtPolylineElt>(row.points));
        RecordingGenerator generator;
        DrawAll(page, generator);
        ASSERT_EQ(generator.GetDrawn().size(), 1U);
        EXPECT_EQ(generator.GetDrawn()[0].ends_with(" Z"), row.isClosed) << generator.GetDrawn()[0];
    }
}

// Angles are floats, so an arc begins beside the end of the line before it. The larger the arc, the larger
// the gap.
TEST(ModelRenderTest, AnArcGoesOnFromTheLineBeforeItWithoutATinyEdge) {
    const float pi = 3.14159265F;
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakeLine(0.0, 10.0, 0.0, 0.0), MakeArc(1000.0, 0.0, 1000.0, 1000.0, pi, pi + 0.1F)});
    OnePage page;
    page.Add(MakeContainer<ORVPrtClosedFigureElt>({region}));
    RecordingGenerator generator;
    DrawAll(page, generator);
    ASSERT_EQ(generator.GetDrawn().size(), 1U);
    const std::string drawn = generator.GetDrawn()[0];
    EXPECT_EQ(std::count(drawn.begin(), drawn.end(), 'L'), 1) << drawn;
    EXPECT_EQ(std::count(drawn.begin(), drawn.end(), 'C'), 1) << drawn;
}

}  // namespace
