// SPDX-License-Identifier: Apache-2.0

// Both interpreters from a host's view: created by the factories, queried and drawn.

#include <gtest/gtest.h>

#include <type_traits>

#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "tests/interpreters/svg/interpreter/asked_interpreters.h"
#include "tests/platform/xml/tree_text.h"
#include "tests/support/built_model.h"
#include "tests/support/named_rows.h"
#include "tests/support/scoped_environment.h"

namespace {

static_assert(!std::is_copy_constructible_v<ORVPrintSVGInterpreter> &&
              !std::is_copy_assignable_v<ORVPrintSVGInterpreter>);
static_assert(!std::is_copy_constructible_v<ORVPrintQVXMLInterpreter> &&
              !std::is_copy_assignable_v<ORVPrintQVXMLInterpreter>);

/// An input of an unknown kind.
class OtherInput final : public ORVPrintInput {
public:
    const ORVMetaClass& GetMetaClass() const override { return ORVPrintInput::MetaClass(); }

private:
    ~OtherInput() override = default;
};

TEST(FactoriesTest, MakeInterpretersOfTheirOwn) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream("<svg/>"));
    const Interpreter svg(fctCreateORVPrintSVGInterpreter(stream.get()));
    EXPECT_NE(dynamic_cast<ORVPrintSVGInterpreter*>(svg.get()), nullptr);
    EXPECT_EQ(svg->GetIdentifier(), ORVString("SVG"));
    const LightResult light = ParseLight("<svg/>");
    const ORVRef<ORVPrintInputXMLElement> element(new ORVPrintInputXMLElement(&light.root));
    const Interpreter qvxml(fctCreateORVPrintQVXMLInterpreter(element.get()));
    EXPECT_NE(dynamic_cast<ORVPrintQVXMLInterpreter*>(qvxml.get()), nullptr);
    EXPECT_EQ(qvxml->GetIdentifier(), ORVString("QVXML"));
    EXPECT_EQ(TALVEN_QUB2_INTERNAL_ORVPrtInterpreterSVG(), 1);
}

TEST(InterpretersTest, NullInputLeavesThemWithoutDocument) {
    ExpectNoDocument(*Interpreter(fctCreateORVPrintSVGInterpreter(nullptr)));
    ExpectNoDocument(*Interpreter(fctCreateORVPrintQVXMLInterpreter(nullptr)));
}

TEST(InterpretersTest, OtherInputLeavesThemWithoutDocument) {
    const ORVRef<OtherInput> input(new OtherInput);
    ExpectNoDocument(*Interpreter(fctCreateORVPrintSVGInterpreter(input.get())));
}

TEST(InterpretersTest, EmptyElementInputLeavesThemWithoutDocument) {
    const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(ORVIDOMElement_var()));
    ExpectNoDocument(*Interpreter(fctCreateORVPrintSVGInterpreter(input.get())));
    ExpectNoDocument(*Interpreter(fctCreateORVPrintQVXMLInterpreter(input.get())));
}

TEST(InterpretersTest, CurrentPathNeedsADocument) {
    ORVPrintSVGInterpreter svg(nullptr);
    ORVPrintQVXMLInterpreter qvxml(nullptr);
    EXPECT_EQ(svg.SetCurrentPath("/a"), 0);
    EXPECT_EQ(qvxml.SetCurrentPath("/a"), 0);
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream("<svg/>"));
    EXPECT_EQ(ORVPrintSVGInterpreter(stream.get()).SetCurrentPath("/a"), 1);
}

TEST(InterpretersTest, StreamIsReadByTheConstructor) {
    Interpreter interpreter;
    {
        const ORVRef<ORVPrintInputMemoryStream> stream(
            new ORVPrintInputMemoryStream("<svg width='5' height='6'/>"));
        interpreter.reset(fctCreateORVPrintSVGInterpreter(stream.get()));
    }
    const Answers answers(*interpreter);
    EXPECT_EQ(answers.countResult, 1);
    EXPECT_EQ(answers.count, 1U);
    EXPECT_EQ(answers.width, 5.0F);
    EXPECT_EQ(answers.height, 6.0F);
}

TEST(InterpretersTest, BackEndIsChosenByTheConstructor) {
    // Not well-formed: only the light back-end yields a page.
    Interpreter light, dom;
    {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", "");
        light = FromBytes("<svg>");
    }
    {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
        dom = FromBytes("<svg>");
    }
    EXPECT_EQ(Answers(*light).count, 1U);
    EXPECT_EQ(Answers(*dom).count, 0U);
}

struct SelectionCase {
    const char* name;
    unsigned int currentPage;
    unsigned char allPages;
    const char* title;  // of the selected page
    int result;         // of drawing
    const char* drawn;  // titles of the pages, in order
};

class PageSelectionTest : public testing::TestWithParam<SelectionCase> {};

TEST_P(PageSelectionTest, DecidesWhatIsAskedAndDrawn) {
    const Interpreter interpreter = FromBytes(kThreePages);
    interpreter->SetCurrentPage(GetParam().currentPage);
    interpreter->SetAllPages(GetParam().allPages);
    const Answers answers(*interpreter);
    EXPECT_EQ(answers.count, 3U);
    EXPECT_EQ(answers.title.GetView(), GetParam().title);
    EXPECT_EQ(answers.width, static_cast<float>(10 + 20 * (GetParam().title[0] - 'A')));
    EXPECT_EQ(answers.height, answers.width + 10.0F);
    EXPECT_EQ(answers.countResult + answers.sizeResult + answers.titleResult, 3);
    PageNoting generator;
    EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), GetParam().result);
    EXPECT_EQ(generator.pages, GetParam().drawn);
}

INSTANTIATE_TEST_SUITE_P(Selections, PageSelectionTest,
                         testing::Values(SelectionCase{"None", 0, 0, "A", 1, "ABC"},
                                         SelectionCase{"First", 1, 0, "A", 1, "A"},
                                         SelectionCase{"Last", 3, 0, "C", 1, "C"},
                                         SelectionCase{"BeyondTheLast", 4, 0, "A", 0, ""},
                                         SelectionCase{"FarBeyond", 0xFFFFFFFFU, 0, "A", 0, ""},
                                         SelectionCase{"All", 0, 1, "A", 1, "ABC"},
                                         SelectionCase{"AllAndOne", 2, 1, "A", 1, "ABC"},
                                         SelectionCase{"AllAndBeyond", 9, 1, "A", 1, "ABC"},
                                         SelectionCase{"OnlyOneMeansAll", 2, 2, "B", 1, "B"}),
                         kNameOfRow);

TEST(InterpretersTest, SelectionMayChangeAtAnyTime) {
    const Interpreter interpreter = FromBytes(kThreePages);
    ORVUnicodeString title;
    for (const char* expected : {"A", "B", "C"}) {
        interpreter->SetCurrentPage(static_cast<unsigned int>(expected[0] - 'A' + 1));
        EXPECT_EQ(interpreter->GetTitle(title), 1);
        EXPECT_EQ(title.GetView(), expected);
    }
}

TEST(InterpretersTest, ModelWithoutPages) {
    const Interpreter interpreter = FromBytes("<doc/>");
    const Answers answers(*interpreter);
    EXPECT_EQ(answers.countResult, 1);
    EXPECT_EQ(answers.sizeResult, 1);
    EXPECT_EQ(answers.titleResult, 1);
    EXPECT_EQ(answers.count, 0U);
    EXPECT_EQ(answers.width, -7.0F);
    EXPECT_EQ(answers.title.GetView(), "old");
    interpreter->SetCurrentPage(1);
    PageNoting generator;
    EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), 0);
}

TEST(InterpretersTest, DrawingGivesTheFailureOfTheGenerator) {
    const Interpreter interpreter = FromBytes(kThreePages);
    PageNoting generator;
    generator.beginPageResult = -9;
    EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), -9);
    EXPECT_EQ(generator.pages, "A");
}

class LazyBuildTest : public testing::TestWithParam<Query> {
protected:
    LazyBuildTest() {
        probes = 0;
        ORVPrintPropertiesManager::SetMemoryProbe([] {
            ++probes;
            return 0.0;
        });
    }
    ~LazyBuildTest() override { ORVPrintPropertiesManager::SetMemoryProbe(nullptr); }

    // Building the document below checks the memory once.
    static inline int probes = 0;
    static constexpr const char* kTwoChildren = "<svg width='5' height='6'><rect/><rect/></svg>";
};
INSTANTIATE_TEST_SUITE_P(Queries, LazyBuildTest, testing::Values(kCount, kSize, kTitle, kDecode));

TEST_P(LazyBuildTest, FirstQueryBuildsAndNoOtherDoes) {
    const Interpreter interpreter = FromBytes(kTwoChildren);
    EXPECT_EQ(probes, 0) << "the constructor builds nothing";
    EXPECT_EQ(Ask(*interpreter, GetParam()), 1);
    EXPECT_EQ(probes, 1);
    for (const Query query : {kCount, kSize, kTitle}) EXPECT_EQ(Ask(*interpreter, query), 1);
    EXPECT_EQ(probes, 1);
}

TEST_P(LazyBuildTest, FailedBuildIsReportedOnceAndNotTriedAgain) {
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    const Interpreter interpreter = FromBytes("<svg");
    EXPECT_EQ(Ask(*interpreter, GetParam()), -1);
    for (const Query query : {kCount, kSize, kTitle}) EXPECT_EQ(Ask(*interpreter, query), 1) << query;
    EXPECT_EQ(Ask(*interpreter, kDecode), 0) << "there is no page to draw";
}

TEST_P(LazyBuildTest, FailureLeavesTheOutputsOfPages) {
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    const Interpreter interpreter = FromBytes("");
    const Answers answers(*interpreter);
    EXPECT_EQ(answers.countResult, -1);
    EXPECT_EQ(answers.count, 0U);
    EXPECT_EQ(answers.width, -7.0F);
    EXPECT_EQ(answers.title.GetView(), "old");
}

TEST(LazyBuildOfNothingTest, EmptyStreamFailsWithBothBackEnds) {
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", value);
        EXPECT_EQ(Ask(*FromBytes(""), kCount), -1);
        EXPECT_EQ(Ask(*FromBytes(""), kDecode), -1);
    }
}

TEST(LazyBuildOfNothingTest, FailedBuildIsNotDrawn) {
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    const Interpreter interpreter = FromBytes("<svg");
    SketchingInspector inspector;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&inspector);
    PageNoting generator;
    EXPECT_EQ(interpreter->Print(&generator, parameters), -1);
    EXPECT_EQ(inspector.count, 0);
}

TEST(InterpretersTest, BoundsAreThoseOfTheSelectedPage) {
    const Interpreter interpreter = FromBytes(kThreePages);
    interpreter->SetCurrentPage(2);
    float xMin = -7.0F, yMin = -7.0F, xMax = -7.0F, yMax = -7.0F;
    interpreter->GetBounds(xMin, yMin, xMax, yMax);
    EXPECT_EQ(xMin, 0.0F);
    EXPECT_EQ(yMin, 0.0F);
    EXPECT_EQ(xMax, 30.0F);
    EXPECT_EQ(yMax, 40.0F);
}

TEST(InterpretersTest, ALastPrintTakesTheDocumentAway) {
    for (const bool isPrinted : {true, false}) {
        const Interpreter interpreter = FromBytes(kThreePages);
        if (isPrinted) Ask(*interpreter, kCount);
        PageNoting generator;
        ORVPrintParameters parameters;
        parameters.SetIsLast(true);
        interpreter->SetAllPages(1);
        EXPECT_EQ(interpreter->Print(&generator, parameters), 1);
        EXPECT_EQ(generator.pages, "ABC");
        ExpectNoDocument(*interpreter);
    }
}

TEST(InterpretersTest, InfosAreTheReportsOfTheBuild) {
    ORVPrintPropertiesManager::ClearInfos();
    ORVPrintPropertiesManager::SetMemoryProbe([] { return 1.0; });
    const Interpreter interpreter = FromBytes("<doc><svg/><svg/><svg/></doc>");
    Ask(*interpreter, kCount);
    ORVPrintPropertiesManager::SetMemoryProbe(nullptr);
    ORVListValORVUnicodeString infos;
    EXPECT_EQ(interpreter->GetInfos(infos), 1);
    ASSERT_EQ(infos.size(), 1U);
    EXPECT_EQ(infos[0].GetView(), "ORVPrintCGM2Interpreter: Low Memory Error");
    ORVPrintPropertiesManager::ClearInfos();
}

}  // namespace
