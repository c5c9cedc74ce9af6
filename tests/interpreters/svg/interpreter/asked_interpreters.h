// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"

// Helpers that query interpreters like a host.

using Interpreter = std::unique_ptr<ORVPrintInterpreter>;

/// Records the titles of the pages drawn.
class PageNoting final : public ORVPrintGenerator {
public:
    int BeginDocument(const ORVPrintDocumentInfo&) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& info) override {
        pages.append(info.title);
        return beginPageResult;
    }
    int BeginGroup(const ORVPrintGroup&) override { return 1; }
    int EndGroup() override { return 1; }
    int BeginClip(const ORVMathBox2D&) override { return 1; }
    int EndClip() override { return 1; }
    int DrawShape(const ORVPrintShape&) override { return 1; }
    int DrawText(const ORVPrintText&) override { return 1; }
    int DrawImage(const ORVPrintImage&) override { return 1; }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

    std::string pages;
    int beginPageResult = 1;
};

/// Records the sketch of the model about to be drawn.
class SketchingInspector final : public ORVPrintModelInspector {
public:
    void Inspect(const ORVPrtModel& model) override {
        ++count;
        sketch.clear();
        for (const ORVPrtImageElt* page : *model.GetImages()) sketch += SketchOf(*page);
    }
    std::string sketch;
    int count = 0;
};

inline constexpr const char* kThreePages =
    "<doc><svg id='a' width='10' height='20'><title>A</title></svg><svg id='b' width='30' "
    "height='40'><title>B</title></svg>"
    "<svg id='c' width='50' height='60'><title>C</title></svg></doc>";

inline Interpreter FromBytes(const std::string& document) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream(document));
    return Interpreter(fctCreateORVPrintSVGInterpreter(stream.get()));
}

// An interpreter's answers to queries; outputs that are not set stay -7.
struct Answers {
    explicit Answers(ORVPrintInterpreter& interpreter) {
        countResult = interpreter.GetPageCount(count);
        sizeResult = interpreter.GetSize(width, height);
        titleResult = interpreter.GetTitle(title);
    }
    unsigned int count = 77;
    float width = -7.0F, height = -7.0F;
    ORVUnicodeString title = "old";
    int countResult, sizeResult, titleResult;
};

inline void ExpectNoDocument(ORVPrintInterpreter& interpreter) {
    const Answers answers(interpreter);
    EXPECT_EQ(answers.countResult, 0);
    EXPECT_EQ(answers.sizeResult, 0);
    EXPECT_EQ(answers.titleResult, 0);
    EXPECT_EQ(answers.count, 77U);
    EXPECT_EQ(answers.width, -7.0F);
    EXPECT_EQ(answers.height, -7.0F);
    EXPECT_EQ(answers.title.GetView(), "old");
    PageNoting generator;
    EXPECT_EQ(interpreter.Print(&generator, ORVPrintParameters()), 0);
    EXPECT_TRUE(generator.pages.empty());
}

enum Query { kCount, kSize, kTitle, kDecode };

inline int Ask(ORVPrintInterpreter& interpreter, Query query) {
    unsigned int count = 0;
    float width = 0.0F, height = 0.0F;
    ORVUnicodeString title;
    PageNoting generator;
    switch (query) {
        case kCount: return interpreter.GetPageCount(count);
        case kSize: return interpreter.GetSize(width, height);
        case kTitle: return interpreter.GetTitle(title);
        case kDecode: return interpreter.Print(&generator, ORVPrintParameters());
    }
    return -99;
}

// The sketch of the model that an interpreter draws.
inline std::string SketchOf(ORVPrintInterpreter& interpreter) {
    SketchingInspector inspector;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&inspector);
    PageNoting generator;
    interpreter.Print(&generator, parameters);
    return inspector.sketch;
}
