// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtRectangleElt.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/support/built_model.h"
#include "tests/support/test_texts.h"

namespace {

class HostileTest : public testing::TestWithParam<Backend> {
protected:
    BuiltModel Build(const std::string& document) const { return BuiltModel(document, {GetParam()}); }
};
INSTANTIATE_TEST_SUITE_P(Backends, HostileTest, testing::ValuesIn(kBackends),
                         [](const auto& row) { return std::string(NameOf(row.param)); });

// Sets the limit of primitives for its lifetime.
class ScopedPrimitiveLimit {
public:
    explicit ScopedPrimitiveLimit(std::uint64_t limit) : old_(ORVPrtModel::GetPrimitiveLimit()) {
        ORVPrtModel::SetPrimitiveLimit(limit);
    }
    ~ScopedPrimitiveLimit() { ORVPrtModel::SetPrimitiveLimit(old_); }
    ScopedPrimitiveLimit(const ScopedPrimitiveLimit&) = delete;
    ScopedPrimitiveLimit& operator=(const ScopedPrimitiveLimit&) = delete;

private:
    std::uint64_t old_;
};

int Draw(const BuiltModel& built, std::uint64_t limit = ORVPrintParameters::kDefaultDrawLimit) {
    RecordingGenerator generator;
    ORVPrintParameters parameters;
    parameters.SetDrawLimit(limit);
    return ORVPrintModelRender(built.GetModel(), &generator, parameters).Draw();
}

// Definitions that each refer to the previous one; `attributes` are those of the reference that draws the
// last.
std::string Chain(int length, const std::string& attributes = {}) {
    std::string text = "<defs><g id='d0'><rect width='1' height='1' fill='red'/></g>";
    for (int i = 1; i < length; ++i)
        text += "<use id='d" + std::to_string(i) + "' xlink:href='#d" + std::to_string(i - 1) + "'/>";
    return Drawing(text + "</defs><use " + attributes + " xlink:href='#d" + std::to_string(length - 1) +
                   "'/>");
}

TEST_P(HostileTest, ADepthOf1024IsBuilt) {
    const BuiltModel built = Build(Drawing(Repeat("<g>", 1023) + Repeat("</g>", 1023)));
    EXPECT_EQ(built.GetResult(), 1);
    ASSERT_EQ(built.GetPageCount(), 1U);
    int depth = 1;
    const ORVPrtGraphicPrimitiveElt* one = &built.GetPage();
    while (!one->GetChildList()->empty()) one = one->GetChildList()->front(), ++depth;
    EXPECT_EQ(depth, 1024);
}

TEST_P(HostileTest, ADepthOf1025IsNotWellFormed) {
    const BuiltModel built = Build(Drawing("<rect/>" + Repeat("<g>", 1024) + Repeat("</g>", 1024)));
    if (GetParam() == Backend::kDom) {
        EXPECT_EQ(built.GetResult(), -1);
        EXPECT_EQ(built.GetPageCount(), 0U);
    } else {
        EXPECT_EQ(built.GetResult(), 1);
        ASSERT_EQ(built.GetPageCount(), 1U);
        EXPECT_EQ(built.GetPage().GetChildren().size(), 2U);  // up to the error
    }
}

TEST_P(HostileTest, EntitiesDoNotGrowWithoutBounds) {
    std::string document = "<!DOCTYPE svg [<!ENTITY e0 'aaaaaaaaaaaaaaaa'>";
    for (int i = 1; i < 40; ++i) {
        const std::string before = "&e" + std::to_string(i - 1) + ";";
        document += "<!ENTITY e" + std::to_string(i) + " '" + Repeat(before, 10) + "'>";
    }
    document += "]><svg width='1' height='1'><desc>&e39;</desc></svg>";
    const BuiltModel built = Build(document);
    EXPECT_EQ(built.GetResult(), GetParam() == Backend::kDom ? -1 : 1);
}

TEST_P(HostileTest, AFanOfDuplicatesEndsAtTheLimitOfPrimitives) {
    const ScopedPrimitiveLimit limit(20'000);
    const BuiltModel built = Build(Drawing(Fan(60, 2, "fill='blue'")));
    EXPECT_EQ(built.GetResult(), 1);
    EXPECT_EQ(built.GetModel().GetBudget().GetTaken(), 20'000U);
    EXPECT_EQ(Draw(built), 1);
}

TEST_P(HostileTest, AFanOfSharedDefinitionsIsBuiltButNotDrawn) {
    const BuiltModel built = Build(Drawing(Fan(60, 2)));
    EXPECT_EQ(built.GetResult(), 1);
    EXPECT_LT(built.GetModel().GetBudget().GetTaken(), 400U);
    EXPECT_EQ(Draw(built), ORVPrintModelRender::kTooManyPrimitives);
}

TEST_P(HostileTest, BoxesOfAFanAreReportedAsAbsentPastTheLimitOfVisits) {
    const BuiltModel built = Build(Drawing(Fan(60, 2)));
    double xMin = 7.0, xMax = 7.0, yMin = 7.0, yMax = 7.0;
    EXPECT_EQ(ORVPrintModelBoundingBoxComputer(1'000'000).Compute(built.GetPage(), xMin, xMax, yMin, yMax),
              0);
    EXPECT_EQ(xMin, 0.0);
    EXPECT_EQ(yMax, 0.0);
}

TEST_P(HostileTest, AChainOf100000ReferencesIsBuiltCopiedMeasuredDrawnAndDestroyed) {
    const BuiltModel built = Build(Chain(100'000));
    EXPECT_EQ(built.GetResult(), 1);
    const ORVPrtGraphicPrimitiveElt& use = *built.GetPage().GetChildren().front();
    const ORVRef<ORVPrtGraphicPrimitiveElt> copy(use.Duplicate());
    ASSERT_TRUE(copy);
    double xMin = 0.0, xMax = 0.0, yMin = 0.0, yMax = 0.0;
    EXPECT_EQ(ORVPrintModelBoundingBoxComputer().Compute(*copy, xMin, xMax, yMin, yMax), 1);
    EXPECT_EQ(xMax, 1.0);
    EXPECT_EQ(Draw(built), 1);
    EXPECT_EQ(Draw(built, 100'002), 1);
    EXPECT_EQ(Draw(built, 100'001), ORVPrintModelRender::kTooManyPrimitives);
}

TEST_P(HostileTest, AChainOf100000ReferencesIsDuplicatedAndRestyled) {
    const BuiltModel built = Build(Chain(100'000, "fill='lime' stroke='red'"));
    EXPECT_EQ(built.GetResult(), 1);
    // Page, holder, group and rectangle of the first definition, references; and the duplicates.
    EXPECT_EQ(built.GetModel().GetBudget().GetTaken(), 4U + 100'000U + 100'001U);
    const ORVPrtGraphicPrimitiveElt* one = built.GetPage().GetChildren().front();
    std::size_t depth = 0;
    while (one->GetChildList() && !one->GetChildList()->empty()) one = one->GetChildList()->front(), ++depth;
    EXPECT_EQ(depth, 100'001U);
    ASSERT_EQ(one->GetKind(), ORVPrtKind::kRectangle);
    EXPECT_EQ(static_cast<const ORVPrtRectangleElt*>(one)->GetFillAttributes().GetFillColourIndex(), 2U);
}

// Each definition is a duplicate of all previous ones, so the chain ends at the limit.
TEST_P(HostileTest, AChainOfDuplicatesEndsAtTheLimitOfPrimitives) {
    const ScopedPrimitiveLimit limit(100'000);
    std::string text = "<defs fill='red'><rect id='d0'/>";
    for (int i = 1; i < 2'000; ++i)
        text += "<use id='d" + std::to_string(i) + "' xlink:href='#d" + std::to_string(i - 1) + "'/>";
    const BuiltModel built = Build(Drawing(text + "</defs><use xlink:href='#d1999'/>"));
    EXPECT_EQ(built.GetResult(), 1);
    EXPECT_EQ(built.GetModel().GetBudget().GetTaken(), 100'000U);
}

TEST_P(HostileTest, AFanOfMarkersEndsAtTheLimitOfPrimitives) {
    const ScopedPrimitiveLimit limit(20'000);
    std::string text = "<marker id='m0'><rect width='1' height='1'/></marker>";
    for (int i = 1; i < 60; ++i)
        text += "<marker id='m" + std::to_string(i) + "'><line stroke='red' fill='blue' marker='url(#m" +
                std::to_string(i - 1) + ")'/></marker>";
    const BuiltModel built = Build(Drawing(text + "<line fill='red' stroke='blue' marker='url(#m59)'/>"));
    EXPECT_EQ(built.GetResult(), 1);
    EXPECT_EQ(built.GetModel().GetBudget().GetTaken(), 20'000U);
}

TEST_P(HostileTest, AMillionNestedStartTagsAreNotWellFormed) {
    const BuiltModel built = Build("<svg>" + Repeat("<g>", 1'000'000));
    EXPECT_EQ(built.GetResult(), GetParam() == Backend::kDom ? -1 : 1);
}

TEST_P(HostileTest, AMillionElementsOfNothingAreSkipped) {
    const BuiltModel built = Build(Drawing(Repeat("<x/>", 1'000'000)));
    EXPECT_EQ(built.GetResult(), 1);
    EXPECT_TRUE(built.GetPage().GetChildren().empty());
}

TEST_P(HostileTest, LongPathsAreRead) {
    const BuiltModel built =
        Build(Drawing("<path fill='red' d='" + Repeat("M1 1h1", 200'000) + "'/><path fill='red' d='" +
                      Repeat("e", 2'000'000) + "'/><path fill='red' d='M" + Repeat("-", 1'000'000) + "'/>"));
    const ORVPrtChildList& paths = built.GetPage().GetChildren();
    ASSERT_EQ(paths.size(), 3U);
    ASSERT_EQ(paths[0]->GetChildList()->size(), 1U);
    EXPECT_EQ(paths[0]->GetChildList()->front()->GetChildList()->size(), 200'000U);
}

TEST_P(HostileTest, LongAttributesAreRead) {
    std::string points;
    points += Repeat("1 2,", 500'000);
    const BuiltModel built = Build(Drawing("<polygon fill='red' points='" + points + "3 4'/>"));
    const auto& page = built.GetPage();
    ASSERT_EQ(page.GetChildren().size(), 1U);
    double xMin = 0.0, xMax = 0.0, yMin = 0.0, yMax = 0.0;
    EXPECT_EQ(ORVPrintModelBoundingBoxComputer().Compute(page, xMin, xMax, yMin, yMax), 1);
    EXPECT_EQ(xMax, 3.0);
    EXPECT_EQ(yMin, 96.0);
}

TEST_P(HostileTest, ManyDefinitionsOfOneNameAreFoundAtOnce) {
    std::string text;
    for (int i = 0; i < 20'000; ++i)
        text += "<defs><rect id='same' width='" + std::to_string(i + 1) + "'/></defs>";
    text += Repeat("<use xlink:href='#SAME'/>", 20'000);
    const BuiltModel built = Build(Drawing(text));
    const ORVPrtChildList& uses = built.GetPage().GetChildren();
    ASSERT_EQ(uses.size(), 20'000U);
    EXPECT_EQ(uses.front()->GetChildList()->front(), uses.back()->GetChildList()->front());
}

TEST_P(HostileTest, DrawingEndsWhenMemoryRunsShort) {
    const BuiltModel built = Build(Drawing(Repeat("<rect fill='red' width='1' height='1'/>", 5'000)));
    ORVPrintPropertiesManager::SetMemoryProbe([] { return 1.0; });
    RecordingGenerator generator;
    const int result = ORVPrintModelRender(built.GetModel(), &generator, ORVPrintParameters()).Draw();
    ORVPrintPropertiesManager::SetMemoryProbe(nullptr);
    EXPECT_EQ(result, ORVPrintModelRender::kLowMemory);
    ASSERT_FALSE(generator.GetLines().empty());
    EXPECT_EQ(generator.GetLines().back(), "end document");
}

TEST_P(HostileTest, NumbersWithoutEndDrawNothingThatIsNotFinite) {
    const BuiltModel built =
        Build(Drawing("<rect fill='red' x='1e999' width='-1e999' height='5'/><circle fill='red' r='1e999'/>"
                      "<g transform='scale(1e300) scale(1e300)'><rect fill='red' width='5' height='5'/></g>"
                      "<path fill='none' stroke='black' d='M0 0L1e999 5A1e308 1e308 0 0 1 1e308 5'/>"));
    EXPECT_EQ(built.GetResult(), 1);
    EXPECT_EQ(Draw(built), 1);
}

}  // namespace
