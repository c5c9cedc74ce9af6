// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "generators/common/ORVOutput.h"
#include "generators/svg/ORVSvgGenerator.h"
#include "platform/xml/ORVLightXml.h"
#include "tests/generators/drawing_calls.h"

/// A page drawn by a test, and the resulting text.
class DrawnSvg {
public:
    explicit DrawnSvg(double width = 90.0, double height = 90.0, const ORVPrintDocumentInfo& document = {}) {
        EXPECT_EQ(generator_.BeginDocument(document), 1);
        EXPECT_EQ(generator_.BeginPage(PageInfo(width, height)), 1);
    }
    DrawnSvg(const DrawnSvg&) = delete;
    DrawnSvg& operator=(const DrawnSvg&) = delete;

    ORVSvgGenerator& Get() { return generator_; }
    /// Ends the page and checks that the document is well-formed.
    /// @return the whole document
    std::string Finish() {
        EXPECT_EQ(generator_.EndPage(), 1);
        EXPECT_EQ(generator_.EndDocument(), 1);
        const std::string& text = output_.GetBytes();
        ORVLightXmlElement root;
        EXPECT_EQ(ORVLightXmlParser().Parse({text.data(), text.size()}, root), 1) << text;
        return text;
    }
    /// Ends the page.
    /// @return the content of the "svg" element
    std::string Content() {
        const std::string text = Finish();
        const std::size_t start = text.find("\">\n") + 3;
        return text.substr(start, text.rfind("</svg>") - start);
    }

private:
    ORVMemoryOutput output_;
    ORVSvgGenerator generator_{output_};
};
