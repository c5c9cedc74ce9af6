// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintModule.h"

#include <gtest/gtest.h>

#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVLightXml.h"

namespace {

constexpr const char* kDrawing = "<svg width='20' height='10'><title>T</title></svg>";

TEST(ORVPrintModuleTest, LoadsTheInterpreterForDrawings) {
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(kDrawing));
    std::string error;
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG", input.get(), error);
    ASSERT_TRUE(interpreter) << error;
    EXPECT_EQ(interpreter->GetIdentifier(), ORVString("SVG"));
    unsigned int version = 0;
    EXPECT_EQ(interpreter->GetVersion(version), 1);
    EXPECT_EQ(version, 1U);
    unsigned int count = 0;
    EXPECT_EQ(interpreter->GetPageCount(count), 1);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(ORVPrintModule::SetCurrentPath("SVG", *interpreter, "/folder/drawing.svg"), 1);
}

TEST(ORVPrintModuleTest, LoadsTheInterpreterForFragments) {
    ORVLightXmlElement element;
    ORVLightXmlParser().Parse({kDrawing, std::char_traits<char>::length(kDrawing)}, element);
    const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(&element));
    std::string error;
    const auto interpreter = ORVPrintModule::CreateInterpreter("QVXML", input.get(), error);
    ASSERT_TRUE(interpreter) << error;
    EXPECT_EQ(interpreter->GetIdentifier(), ORVString("QVXML"));
    EXPECT_EQ(ORVPrintModule::SetCurrentPath("QVXML", *interpreter, "/folder/report.qvxml"), 1);
}

TEST(ORVPrintModuleTest, SaysWhatIsMissing) {
    std::string error;
    EXPECT_FALSE(ORVPrintModule::CreateInterpreter("DRAW", nullptr, error));
    EXPECT_NE(error.find("DRAW"), error.npos);
}

TEST(ORVPrintModuleTest, FragmentsCannotBeStreams) {
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(kDrawing));
    std::string error;
    EXPECT_FALSE(ORVPrintModule::CreateInterpreter("QVXML", input.get(), error));
    EXPECT_FALSE(error.empty());
}

TEST(ORVPrintModuleTest, InterpreterWithoutInputTakesNoPath) {
    std::string error;
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG", nullptr, error);
    ASSERT_TRUE(interpreter) << error;
    EXPECT_EQ(ORVPrintModule::SetCurrentPath("SVG", *interpreter, "/folder/drawing.svg"), 0);
}

}  // namespace
