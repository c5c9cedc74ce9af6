// SPDX-License-Identifier: Apache-2.0

// The model that an interpreter provides.

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/interpreters/svg/interpreter/asked_interpreters.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/scoped_environment.h"

namespace {

std::string SketchOf(const ORVPrtModel& model) {
    std::string sketch;
    for (const ORVPrtImageElt* page : *model.GetImages()) sketch += SketchOf(*page);
    return sketch;
}

TEST(ModelOfInterpreterTest, IsTheWholeOneWhateverPageIsSelected) {
    const Interpreter interpreter = FromBytes(kThreePages);
    interpreter->SetCurrentPage(2);
    ORVRef<const ORVPrtModel> model, again;
    EXPECT_EQ(interpreter->GetModel(model), 1);
    ASSERT_TRUE(model);
    EXPECT_EQ(model->GetImages()->size(), 3U);
    EXPECT_EQ(interpreter->SetCurrentPage(99), 1);
    EXPECT_EQ(interpreter->GetModel(again), 1);
    EXPECT_EQ(again.get(), model.get()) << "it is built once";
}

TEST(ModelOfInterpreterTest, LeavesTheSelectionAlone) {
    const Interpreter interpreter = FromBytes(kThreePages);
    interpreter->SetCurrentPage(2);
    ORVRef<const ORVPrtModel> model;
    interpreter->GetModel(model);
    PageNoting generator;
    EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), 1);
    EXPECT_EQ(generator.pages, "B");
}

TEST(ModelOfInterpreterTest, OutlivesInterpreterAndInput) {
    ORVRef<const ORVPrtModel> model;
    std::string before;
    {
        const Interpreter interpreter = FromBytes(kThreePages);
        interpreter->GetModel(model);
        before = SketchOf(*model);
    }
    EXPECT_EQ(SketchOf(*model), before);
    EXPECT_NE(before, "");
}

TEST(ModelOfInterpreterTest, IsThereAsFarAsItWasBuilt) {
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    ORVRef<const ORVPrtModel> model;
    EXPECT_EQ(FromBytes("<svg")->GetModel(model), -1);
    ASSERT_TRUE(model);
    EXPECT_TRUE(model->GetImages()->empty());
    EXPECT_EQ(FromBytes("<doc/>")->GetModel(model), 1);
    ASSERT_TRUE(model);
    EXPECT_TRUE(model->GetImages()->empty());
}

TEST(ModelOfInterpreterTest, IsNoneWithoutADocument) {
    ORVRef<const ORVPrtModel> model;
    FromBytes(kThreePages)->GetModel(model);
    EXPECT_EQ(Interpreter(fctCreateORVPrintSVGInterpreter(nullptr))->GetModel(model), 0);
    EXPECT_FALSE(model);
    const Interpreter printed = FromBytes(kThreePages);
    ORVPrintParameters last;
    last.SetIsLast(true);
    PageNoting generator;
    EXPECT_EQ(printed->Print(&generator, last), 1);
    EXPECT_EQ(printed->GetModel(model), 0);
    EXPECT_FALSE(model);
}

TEST(ModelOfInterpreterTest, IsNoneForAnInterpreterThatDrawsWithoutOne) {
    class Direct final : public ORVPrintInterpreter {
    public:
        Direct() : ORVPrintInterpreter("Direct") {}
        int GetSize(float& /*width*/, float& /*height*/) override { return 1; }
        int GetPageCount(unsigned int& count) override { return count = 1, 1; }
        int GetTitle(ORVUnicodeString& /*title*/) override { return 1; }

    private:
        int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& /*parameters*/) override {
            return generator ? 1 : 0;
        }
    } interpreter;
    ORVRef<const ORVPrtModel> model;
    EXPECT_EQ(interpreter.GetModel(model), 0);
    EXPECT_FALSE(model);
}

}  // namespace
