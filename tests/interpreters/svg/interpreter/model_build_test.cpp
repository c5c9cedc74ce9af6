// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/interpreter/model_build.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "interpreters/svg/interpreter/SvgDocumentSource.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/system/ORVRef.h"
#include "tests/platform/xml/tree_text.h"
#include "tests/support/built_model.h"
#include "tests/support/sketch_case.h"

namespace {

// The identifiers of the pages, each in brackets, separated by blanks.
std::string PagesOf(const ORVPrtModel& model) {
    std::string pages;
    for (const ORVPrtImageElt* page : *model.GetImages())
        pages.append("[").append(page->GetID().GetView()).append("]");
    return pages;
}

struct PagesCase {
    const char* name;
    const char* document;
    int domResult;
    const char* domPages;
    int lightResult;
    const char* lightPages;

    friend std::ostream& operator<<(std::ostream& out, const PagesCase& row) { return out << row.document; }
};

class PagesOfADocumentTest : public testing::TestWithParam<PagesCase> {};

TEST_P(PagesOfADocumentTest, AreItsSvgElements) {
    const BuiltModel dom(GetParam().document, {.backend = Backend::kDom});
    EXPECT_EQ(dom.GetResult(), GetParam().domResult);
    EXPECT_EQ(PagesOf(dom.GetModel()), GetParam().domPages);
    const BuiltModel light(GetParam().document, {.backend = Backend::kLight});
    EXPECT_EQ(light.GetResult(), GetParam().lightResult);
    EXPECT_EQ(PagesOf(light.GetModel()), GetParam().lightPages);
}

INSTANTIATE_TEST_SUITE_P(
    Documents, PagesOfADocumentTest,
    testing::Values(
        PagesCase{"Root", "<svg id='r'/>", 1, "[r]", 1, "[r]"},
        PagesCase{"OneNestedStaysOnePage", "<svg id='r'><svg id='a'/></svg>", 1, "[r]", 1, "[r]"},
        PagesCase{"TwoNestedAreTwoPages", "<svg id='r'><svg id='a'/><rect/><svg id='b'/></svg>", 1, "[a][b]",
                  1, "[a][b]"},
        PagesCase{"ThreeNested", "<svg id='r'><svg id='a'/><svg id='b'/><svg id='c'/></svg>", 1, "[a][b][c]",
                  1, "[a][b][c]"},
        PagesCase{"OnlyDirectChildrenCount", "<svg id='r'><svg id='a'><svg id='c'/><svg id='d'/></svg></svg>",
                  1, "[r]", 1, "[r]"},
        PagesCase{"ChildrenOfPagesAreNoPages",
                  "<svg id='r'><svg id='a'><svg/><svg/></svg><svg id='b'/></svg>", 1, "[a][b]", 1, "[a][b]"},
        PagesCase{"InsideAGroupTheyDoNotCount", "<svg id='r'><g><svg id='a'/><svg id='b'/></g></svg>", 1,
                  "[r]", 1, "[r]"},
        PagesCase{"OtherRoot", "<doc><svg id='a'/></doc>", 1, "[a]", 1, "[a]"},
        PagesCase{"OtherRootWithTwo", "<doc><svg id='a'/><p/><svg id='b'/></doc>", 1, "[a][b]", 1, "[a][b]"},
        PagesCase{"OtherRootDeeper", "<doc><p><svg id='a'/></p></doc>", 1, "", 1, ""},
        PagesCase{"OtherRootWithoutAny", "<doc/>", 1, "", 1, ""},
        PagesCase{"NameMatchesExactly", "<SVG id='r'/>", 1, "", 1, ""},
        PagesCase{"PrefixedNameIsAnother", "<s:svg xmlns:s='http://www.w3.org/2000/svg' id='r'/>", 1, "", 1,
                  ""},
        PagesCase{"CommentsAroundTheRoot", "<!--a--><svg id='r'/><!--b-->", 1, "[r]", 1, "[r]"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Broken, PagesOfADocumentTest,
    testing::Values(PagesCase{"Empty", "", -1, "", -1, ""}, PagesCase{"Blank", " \n", -1, "", 1, ""},
                    PagesCase{"NoXml", "hello", -1, "", 1, ""},
                    PagesCase{"BrokenOff", "<svg id='r'><rect/><g>", -1, "", 1, "[r]"},
                    PagesCase{"BrokenOffInATag", "<svg id='r'><svg id='a'/><svg id='b", -1, "", 1, "[r]"},
                    PagesCase{"SecondRoot", "<svg id='r'/><svg id='s'/>", -1, "", 1, "[r]"},
                    PagesCase{"BadUtf8", "<svg id='r'><title>\xFF</title></svg>", -1, "", 1, "[r]"},
                    PagesCase{"DeclaredEncodingIsTheLightParsers",
                              "<?xml version='1.0' encoding='ISO-8859-1'?><svg id='\xE4'/>", -1, "", 1,
                              "[\xC3\xA4]"},
                    PagesCase{"DeclaredEncodingIsIgnoredByDom",
                              "<?xml version='1.0' encoding='ISO-8859-1'?><svg id='\xC3\xA4'/>", 1,
                              "[\xC3\xA4]", 1, "[\xC3\x83\xC2\xA4]"},
                    PagesCase{"ByteOrderMark", "\xEF\xBB\xBF<svg id='r'/>", 1, "[r]", 1, "[r]"}),
    kNameOfRow);

TEST(ModelBuildTest, FailsWithoutModel) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream("<svg/>"));
    const SvgDocumentSource source(*stream);
    EXPECT_EQ(BuildModel(source, nullptr), -1);
}

TEST(ModelBuildTest, FailsWithoutAnElement) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    const SvgDocumentSource dom{ORVIDOMElement_var()};
    EXPECT_EQ(BuildModel(dom, model.get()), -1);
    const SvgDocumentSource light(static_cast<const ORVLightXmlElementItf*>(nullptr));
    EXPECT_EQ(BuildModel(light, model.get()), -1);
    EXPECT_EQ(PagesOf(*model), "");
}

// An element inside a document: the DOM back-end continues with its siblings, the light one does not.
TEST(ModelBuildTest, DomHandlesTheSiblingsToo) {
    const char* document =
        "<doc><svg id='before'/><svg id='a'/>text<!--c--><other><svg id='b'/></other>"
        "<svg id='c'><svg id='d'/><svg id='e'/></svg></doc>";
    const DomResult dom = ParseDom(document);
    const ORVXmlNode* second = dom.root.GetNode()->firstChild->nextSibling;
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    EXPECT_EQ(BuildModel(SvgDocumentSource(ORVIDOMElement_var(dom.root.GetTree(), second)), model.get()), 1);
    EXPECT_EQ(PagesOf(*model), "[a][b][d][e]");
}

TEST(ModelBuildTest, LightHandlesItsElementAlone) {
    const LightResult light = ParseLight("<doc><svg id='a'/><svg id='b'/></doc>");
    const ORVLightXmlElement first(light.root.GetTree(), light.root.GetNode()->firstChild);
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    EXPECT_EQ(BuildModel(SvgDocumentSource(&first), model.get()), 1);
    EXPECT_EQ(PagesOf(*model), "[a]");
}

/// Scripted memory checks: gives the answers in turn and repeats the last one.
class MemoryWatchTest : public testing::TestWithParam<Backend> {
protected:
    MemoryWatchTest() {
        probes = 0;
        shortFrom = 1'000'000;
        ORVPrintPropertiesManager::SetMemoryProbe([] { return ++probes >= shortFrom ? 1.0 : 0.0; });
        ORVPrintPropertiesManager::SetOnErrorAction(ORVPrintPropertiesManager::kContinueOnError);
        ORVPrintPropertiesManager::ClearInfos();
    }
    ~MemoryWatchTest() override {
        ORVPrintPropertiesManager::SetMemoryProbe(nullptr);
        ORVPrintPropertiesManager::SetOnErrorAction(ORVPrintPropertiesManager::kContinueOnError);
        ORVPrintPropertiesManager::ClearInfos();
    }

    // An element with empty children named `a` onwards.
    static std::string Document(const std::string& root, const std::string& child, int count) {
        std::string document = "<" + root + " id='r'>";
        for (int i = 0; i < count; ++i) document += "<" + child + " id='" + std::to_string(i) + "'/>";
        return document + "</" + root + ">";
    }
    std::string Build(const std::string& document) {
        const BuiltModel model(document, {.backend = GetParam()});
        EXPECT_EQ(model.GetResult(), 1);
        return PagesOf(model.GetModel());
    }
    static std::size_t Messages() {
        for (const auto& info : ORVPrintPropertiesManager::GetInfos()) {
            EXPECT_EQ(info.type, 2);
            EXPECT_EQ(info.message.GetView(), "ORVPrintCGM2Interpreter: Low Memory Error");
        }
        return ORVPrintPropertiesManager::GetInfos().size();
    }

    static inline int probes = 0, shortFrom = 0;
};
INSTANTIATE_TEST_SUITE_P(Backends, MemoryWatchTest, testing::ValuesIn(kBackends),
                         [](const auto& row) { return std::string(NameOf(row.param)); });

TEST_P(MemoryWatchTest, ProbesNineChildrenOfTen) {
    // One pass over 25 children: 0, 10 and 20 are not checked.
    EXPECT_EQ(Build(Document("svg", "rect", 25)), "[r]");
    EXPECT_EQ(probes, 22);
    EXPECT_EQ(Messages(), 0U);
}

TEST_P(MemoryWatchTest, CountsOnThroughBothPasses) {
    // Two passes over 7 children: visits 0 to 13, of which 0 and 10 are not checked.
    EXPECT_EQ(Build(Document("svg", "svg", 7)), "[0][1][2][3][4][5][6]");
    EXPECT_EQ(probes, 12);
}

TEST_P(MemoryWatchTest, OneChildIsNotProbed) {
    EXPECT_EQ(Build(Document("svg", "svg", 1)), "[r]");
    EXPECT_EQ(probes, 0);
}

TEST_P(MemoryWatchTest, GrandchildrenAreNotProbed) {
    EXPECT_EQ(Build("<svg id='r'><g><rect/><rect/><rect/><rect/></g></svg>"), "[r]");
    EXPECT_EQ(probes, 0);
}

TEST_P(MemoryWatchTest, EveryChildCountsWhateverItsName) {
    EXPECT_EQ(Build("<doc><a/><b/><svg id='x'/><c/></doc>"), "[x]");
    EXPECT_EQ(probes, 3);
}

TEST_P(MemoryWatchTest, ReportsAndGoesOn) {
    // Memory is found to be short at child 1, and reported before children 2, 3 and 4.
    shortFrom = 1;
    EXPECT_EQ(Build(Document("doc", "svg", 5)), "[0][1][2][3][4]");
    EXPECT_EQ(Messages(), 3U);
}

TEST_P(MemoryWatchTest, StopsWhenTheHostWantsIt) {
    shortFrom = 1;
    ORVPrintPropertiesManager::SetOnErrorAction(ORVPrintPropertiesManager::kStopOnError);
    EXPECT_EQ(Build(Document("doc", "svg", 5)), "[0][1]");
    EXPECT_EQ(Messages(), 1U);
}

TEST_P(MemoryWatchTest, OtherActionsDoNotStop) {
    shortFrom = 1;
    ORVPrintPropertiesManager::SetOnErrorAction(2);
    EXPECT_EQ(Build(Document("doc", "svg", 3)), "[0][1][2]");
    EXPECT_EQ(Messages(), 1U);
}

TEST_P(MemoryWatchTest, StoppingTheCountDecidesOnWhatWasCounted) {
    // Two were counted before stopping, so the children become pages, but the second pass stops immediately.
    shortFrom = 1;
    ORVPrintPropertiesManager::SetOnErrorAction(ORVPrintPropertiesManager::kStopOnError);
    EXPECT_EQ(Build(Document("svg", "svg", 5)), "");
    EXPECT_EQ(Messages(), 2U);
}

TEST_P(MemoryWatchTest, StoppingTheCountEarlyLeavesOnePage) {
    // No "svg" of "rect, rect, svg, svg" was counted: the root is the page.
    shortFrom = 1;
    ORVPrintPropertiesManager::SetOnErrorAction(ORVPrintPropertiesManager::kStopOnError);
    EXPECT_EQ(Build("<svg id='r'><rect/><rect/><svg id='a'/><svg id='b'/></svg>"), "[r]");
    EXPECT_EQ(Messages(), 1U);
}

TEST_P(MemoryWatchTest, RecoveredMemoryEndsTheReports) {
    // Short at the first check only: visits 0 (not checked), 1 (short), 2 (reported, then sufficient), 3.
    ORVPrintPropertiesManager::SetMemoryProbe([] { return ++probes == 1 ? 1.0 : 0.0; });
    EXPECT_EQ(Build(Document("doc", "svg", 5)), "[0][1][2][3][4]");
    EXPECT_EQ(Messages(), 1U);
}

TEST_P(MemoryWatchTest, UnprobedChildKeepsTheFlag) {
    // Short from the ninth check on, at child 9; child 10 is not checked and keeps the flag for child 11.
    shortFrom = 9;
    EXPECT_EQ(Build(Document("doc", "p", 12)), "");
    EXPECT_EQ(Messages(), 2U);
}

TEST_P(MemoryWatchTest, NineTenthsAreNotShort) {
    ORVPrintPropertiesManager::SetMemoryProbe([] { return 0.9; });
    Build(Document("doc", "svg", 5));
    EXPECT_EQ(Messages(), 0U);
    ORVPrintPropertiesManager::SetMemoryProbe([] { return 0.9001; });
    Build(Document("doc", "svg", 5));
    EXPECT_EQ(Messages(), 3U);
}

class DomMemoryWatchTest : public MemoryWatchTest {};
INSTANTIATE_TEST_SUITE_P(Backends, DomMemoryWatchTest, testing::Values(Backend::kDom));

TEST_P(DomMemoryWatchTest, StoppingLeavesTheSiblingsOut) {
    const DomResult dom = ParseDom("<doc>" + Document("other", "svg", 5) + "<svg id='after'/></doc>");
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    const SvgDocumentSource source(ORVIDOMElement_var(dom.root.GetTree(), dom.root.GetNode()->firstChild));
    shortFrom = 2;
    ORVPrintPropertiesManager::SetOnErrorAction(ORVPrintPropertiesManager::kStopOnError);
    EXPECT_EQ(BuildModel(source, model.get()), 1);
    EXPECT_EQ(PagesOf(*model), "[0][1][2]");
}

}  // namespace
