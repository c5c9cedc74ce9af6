// SPDX-License-Identifier: Apache-2.0
#include "tests/interpreters/svg2/text/laid_out.h"

#include <gtest/gtest.h>

#include "interpreters/svg2/document/parsing.h"
#include "interpreters/svg2/text/TextLayout.h"

namespace svg2_test {
namespace {

/// Calls `use` with each segment of a text.
template <class Use>
void LayOut(const std::string& text, Use use) {
    const auto document = svg2::ParseDocument(
        "<svg xmlns='http://www.w3.org/2000/svg' font-family='DejaVu Sans' font-size='10'>" + text +
        "</svg>");
    ASSERT_TRUE(document) << text;
    svg2::Scene scene(*document, {});
    svg2::TextFonts fonts;
    svg2::TextLayout layout(scene, fonts);
    const svg2::ElementIndex element = document->FindAll(svg2::Tag::kText).front();
    ASSERT_TRUE(layout.LayOut(element, scene.StyleInPlace(element), {100.0, 100.0})) << text;
    for (const svg2::TextSegment& segment : layout.GetSegments()) use(segment);
}

}  // namespace

std::vector<unsigned> GlyphsOf(const std::string& text) {
    std::vector<unsigned> glyphs;
    LayOut(text, [&](const svg2::TextSegment& segment) {
        for (const ORVGlyphRun& run : segment.layout.runs)
            for (const ORVGlyph& glyph : run.glyphs) glyphs.push_back(glyph.index);
    });
    return glyphs;
}

double LengthOf(const std::string& text) {
    double length = 0.0;
    LayOut(text, [&](const svg2::TextSegment& segment) { length += segment.advance; });
    return length;
}

bool IsEvenlySpaced(const std::string& text) {
    bool isEven = true;
    LayOut(text, [&](const svg2::TextSegment& segment) { isEven = isEven && segment.layout.isEvenlySpaced; });
    return isEven;
}

}  // namespace svg2_test
