// SPDX-License-Identifier: Apache-2.0

// Groups, links and identifiers, as the walk over a page reports them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/platform/print/drawn_page.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/platform/visualization/written_images.h"

namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

TEST(PageWalkTest, GroupsThatSaySomethingAreReported) {
    const auto silent = MakeContainer<ORVPrtGroupElt>({MakeLine(0.0, 50.0, 1.0, 50.0)});
    const auto named = MakeContainer<ORVPrtGroupElt>({silent});
    named->SetID("n");
    named->SetDescription("what");
    OnePage page;
    page.Add(named);
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_EQ(generator.GetText(),
              "document \"\" 1\npage 1 100x50\ngroup #n \"what\"\nstroke #000000 w1 M0,0 L1,0\nend "
              "group\nend page\n"
              "end document\n");
}

ORVRef<ORVPrtGroupElt> MakeLink(const char* elementId, const char* url) {
    ORVPrintLinkURI link;
    link.SetElementId(elementId);
    link.SetBaseURL(url);
    ORVPrtGroupAttributes attributes;
    attributes.SetLinkURI(link);
    auto group = Make<ORVPrtGroupElt>();
    group->SetGroupAttributes(attributes);
    return group;
}

TEST(PageWalkTest, LinksLeadOnlyToGroupsThatAreThere) {
    const auto target = Make<ORVPrtGroupElt>();
    target->SetID("here");
    const auto unlinked = Make<ORVPrtGroupElt>();
    unlinked->SetID("other");
    OnePage page;
    for (const auto& group :
         {MakeLink("here", ""), MakeLink("nowhere", ""), MakeLink("", "http://x/"), target, target, unlinked})
        page.Add(group);
    RecordingGenerator generator;
    DrawAll(page, generator);
    std::vector<std::string> groups;
    for (const std::string& line : generator.GetLines())
        if (line.starts_with("group")) groups.push_back(line);
    EXPECT_THAT(groups, ElementsAre("group ->#here", "group ->http://x/", "group #here target", "group #here",
                                    "group #other"));
}

TEST(PageWalkTest, LinksLeadToPagesWhereNoAddressIsGiven) {
    OnePage page;
    (*page.GetModel().GetImages())[0]->SetID("page");
    page.Add(MakeLink("page", ""));
    page.Add(MakeLink("page", "http://x/"));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetText(), HasSubstr("group #page target\nend group\ngroup ->#page\n"));
    EXPECT_THAT(generator.GetText(), HasSubstr("->http://x/"));
}

/// A rectangle, a line, a text and an image, each with the identifier "shape".
std::vector<ORVRef<ORVPrtGraphicPrimitiveElt>> NamedShapes() {
    const auto bitmap = Make<ORVPrtBitmapImageElt>();
    bitmap->SetSize(30.0, 15.0);
    bitmap->SetPixelImage(MakeImage(2, 3).get());
    std::vector<ORVRef<ORVPrtGraphicPrimitiveElt>> shapes{
        MakeRectangle(0.0, 0.0, 1.0, 1.0), MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}),
        MakeText("Word", 10.0, 40.0), bitmap};
    for (const auto& shape : shapes) shape->SetID("shape");
    return shapes;
}

std::vector<std::string> PageLines(const RecordingGenerator& generator) {
    const std::vector<std::string>& lines = generator.GetLines();
    return {lines.begin() + 2, lines.end() - 2};  // without document and page
}

TEST(PageWalkTest, ShapeThatALinkLeadsToIsAGroupOfItsOwn) {
    for (const auto& shape : NamedShapes())
        for (const bool keepsIdentifiers : {false, true}) {
            OnePage page;
            page.Add(MakeLink("shape", ""));
            page.Add(shape);
            page.Add(MakeRectangle(2.0, 0.0, 3.0, 1.0));
            RecordingGenerator generator;
            if (keepsIdentifiers) generator.KeepIdentifiers();
            EXPECT_EQ(DrawAll(page, generator), 1);
            EXPECT_THAT(PageLines(generator),
                        ElementsAre("group ->#shape", "end group", "group #shape target",
                                    Not(HasSubstr("#shape")), "end group", StartsWith("fill #000000 M2,50")));
        }
}

TEST(PageWalkTest, PageThatALinkLeadsToIsAGroupWithoutContent) {
    const auto shape = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    shape->SetID("page");
    OnePage page;
    page.GetPage().SetID("page");
    page.Add(shape);
    page.Add(MakeLink("page", ""));
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_THAT(PageLines(generator),
                ElementsAre("group #page target", "end group", StartsWith("fill #000000 M0,50"),
                            "group ->#page", "end group"));
}

TEST(PageWalkTest, PageWithoutLinksToItIsNoGroup) {
    OnePage page;
    page.GetPage().SetID("page");
    page.Add(MakeLink("", "http://x/"));
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_THAT(PageLines(generator), ElementsAre("group ->http://x/", "end group"));
}

TEST(PageWalkTest, DescriptionOfAShapeIsThatOfAGroupAroundIt) {
    const auto described = MakeRectangle(0.0, 0.0, 1.0, 1.0), both = MakeRectangle(2.0, 0.0, 3.0, 1.0);
    described->SetDescription("Wall");
    both->SetDescription("Door");
    both->SetID("door");
    OnePage page;
    page.Add(described);
    page.Add(both);
    RecordingGenerator indifferent, keen;
    keen.KeepIdentifiers();
    EXPECT_EQ(DrawAll(page, indifferent), 1);
    EXPECT_EQ(DrawAll(page, keen), 1);
    EXPECT_THAT(PageLines(indifferent),
                ElementsAre(StartsWith("fill #000000 M0,50"), StartsWith("fill #000000 M2,50")));
    EXPECT_THAT(PageLines(keen),
                ElementsAre("group \"Wall\"", StartsWith("fill #000000 M0,50"), "end group",
                            "group #door \"Door\"", StartsWith("fill #000000 M2,50"), "end group"));
}

TEST(PageWalkTest, OtherShapesSayTheirIdentifiersWhereTheyAreOfUse) {
    for (const auto& shape : NamedShapes()) {
        OnePage page;
        page.Add(shape);
        page.Add(MakeRectangle(2.0, 0.0, 3.0, 1.0));
        RecordingGenerator indifferent, keen;
        keen.KeepIdentifiers();
        EXPECT_EQ(DrawAll(page, indifferent), 1);
        EXPECT_EQ(DrawAll(page, keen), 1);
        EXPECT_THAT(PageLines(indifferent),
                    ElementsAre(Not(HasSubstr("#shape")), StartsWith("fill #000000 M2,50")));
        EXPECT_THAT(PageLines(keen), ElementsAre(EndsWith(" #shape"), StartsWith("fill #000000 M2,50")));
        EXPECT_THAT(PageLines(keen).back(), Not(HasSubstr("#shape")));
    }
}

TEST(PageWalkTest, FirstPlaceUnderAnIdentifierIsTheTargetOfItsLinks) {
    const auto first = MakeRectangle(0.0, 0.0, 1.0, 1.0), second = MakeRectangle(2.0, 0.0, 3.0, 1.0);
    const auto group = Make<ORVPrtGroupElt>();
    for (ORVPrtGraphicPrimitiveElt* named :
         std::initializer_list<ORVPrtGraphicPrimitiveElt*>{first.get(), second.get(), group.get()})
        named->SetID("here");
    OnePage page;
    page.Add(first);
    page.Add(second);
    page.Add(group);
    page.Add(MakeLink("here", ""));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(PageLines(generator), ElementsAre("group #here target", StartsWith("fill #000000 M0,50"),
                                                  "end group", StartsWith("fill #000000 M2,50"),
                                                  "group #here", "end group", "group ->#here", "end group"));
}

TEST(PageWalkTest, NamedLinesAreNoPiecesOfOthers) {
    const auto curve = [](double x, const char* id) {
        auto one =
            MakePoints<ORVPrtPolyCubicBezierElt>({{x, 50.0}, {x, 40.0}, {x + 5.0, 40.0}, {x + 5.0, 50.0}});
        one->SetID(id);
        return one;
    };
    OnePage page;
    for (const auto& piece : {curve(0.0, ""), curve(5.0, "n"), curve(10.0, "")}) page.Add(piece);
    RecordingGenerator keen;
    keen.KeepIdentifiers();
    DrawAll(page, keen);
    EXPECT_THAT(keen.GetDrawn(), ElementsAre(HasSubstr(" M0,0 "), AllOf(HasSubstr(" M5,0 "), EndsWith(" #n")),
                                             HasSubstr(" M10,0 ")));
    // For a generator that does not request identifiers, the pieces are joined into one line.
    RecordingGenerator indifferent;
    DrawAll(page, indifferent);
    EXPECT_EQ(indifferent.GetDrawn().size(), 1U);
}

TEST(PageWalkTest, DrawingThatEndsInANamedShapeClosesItsGroup) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 100.0, 50.0);
    rectangle->SetID("here");
    const auto group = MakeContainer<ORVPrtGroupElt>({rectangle});
    OnePage page;
    page.Add(MakeLink("here", ""));
    page.Add(group);
    for (int i = 0; i < 100; ++i) page.Add(group);
    ORVPrintParameters parameters;
    parameters.SetRepeatLimit(0);
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator, parameters), ORVPrintModelRender::kTooManyRepeats);
    int open = 0;
    for (const std::string& line : generator.GetLines()) {
        if (line.starts_with("group")) ++open;
        if (line == "end group") --open;
    }
    EXPECT_EQ(open, 0);
    EXPECT_THAT(generator.GetText(), EndsWith("end page\nend document\n"));
}

}  // namespace
