// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/glyph_paint.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "interpreters/svg/geometry/base64.h"
#include "platform/visualization/fonts/ORVDocumentFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "tests/support/tiny_fonts.h"

namespace {

std::string PaintedFont() {
    std::string bytes;
    EXPECT_TRUE(DecodeBase64(tiny_fonts::kPainted, bytes));
    return bytes;
}

/// Records the calls as text.
class Sketch final : public ORVGlyphPaintSink {
public:
    std::string text;
    std::size_t most = 100'000;  // characters; stops the painting when there are more

    void BeginOutline(std::uint32_t /*glyph*/, const ORVMathAffine2D& /*map*/) override {
        text += "outline{";
    }
    void EndOutline() override { text += "}"; }
    void Fill(const ORVGlyphPaint& paint) override {
        constexpr const char* kKinds[] = {"colour ", "linear ", "radial ", "sweep "};
        text += kKinds[static_cast<int>(paint.kind)] + std::to_string(paint.stops.size());
        text += paint.kind == ORVGlyphPaint::Kind::kColour && paint.colour.isTextColour ? " of text;" : ";";
        last = paint;
    }
    void BeginLayer(ORVGlyphBlend blend) override {
        text += "layer " + std::to_string(static_cast<int>(blend)) + "{";
    }
    bool BeginMaskedLayer(bool isInverse) override {
        text += isInverse ? "unmasked{" : "masked{";
        return true;
    }
    void EndMask() override { text += "|"; }
    void EndLayer() override { text += "}"; }
    bool IsStopped() const override { return text.size() > most; }

    ORVGlyphPaint last;
};

TEST(GlyphPaintTest, PaintsComePartByPart) {
    const auto face = ORVOpenDocumentFont({PaintedFont(), "t"});
    ASSERT_TRUE(face);
    const struct {
        char letter;
        const char* parts;
    } rows[] = {
        {'A', "outline{colour 0;}"},
        {'B', "outline{linear 2;}"},
        {'C', "outline{radial 2;}"},
        {'D', "outline{sweep 3;}"},
        {'E', "outline{colour 0;}outline{colour 0 of text;}"},
        {'F', "outline{colour 0;}"},
        {'G', "outline{colour 0;}"},
        {'H', "masked{outline{colour 0;}|outline{colour 0;}}"},
        {'I', "unmasked{outline{colour 0;}|outline{colour 0;}}"},
        {'J', "layer 0{outline{colour 0;}layer 11{outline{colour 0;}}}"},
        {'L', "outline{outline{colour 0;}}"},
    };
    for (const auto& row : rows) {
        Sketch sketch;
        EXPECT_TRUE(ORVPaintGlyph(*face, face->GetGlyph(static_cast<char32_t>(row.letter)), sketch))
            << row.letter;
        EXPECT_EQ(sketch.text, row.parts) << row.letter;
    }
    Sketch none;
    EXPECT_FALSE(ORVPaintGlyph(*face, face->GetGlyph(' '), none));
    EXPECT_FALSE(ORVIsPaintedGlyph(*face, face->GetGlyph(' ')));
    EXPECT_EQ(none.text, "");
}

TEST(GlyphPaintTest, PlacesAreInEm) {
    const auto face = ORVOpenDocumentFont({PaintedFont(), "t"});
    ASSERT_TRUE(face);
    Sketch linear, radial, sweep;
    ORVPaintGlyph(*face, face->GetGlyph('B'), linear);
    EXPECT_DOUBLE_EQ(linear.last.start.x, 0.1);
    EXPECT_DOUBLE_EQ(linear.last.end.x, 0.8);
    ORVPaintGlyph(*face, face->GetGlyph('C'), radial);
    EXPECT_DOUBLE_EQ(radial.last.endRadius, 0.35);
    ORVPaintGlyph(*face, face->GetGlyph('D'), sweep);
    EXPECT_NEAR(sweep.last.startAngle, 0.0, 0.02);
    EXPECT_NEAR(sweep.last.endAngle, 360.0, 0.02);
}

TEST(GlyphPaintTest, DamagedPaintsEndInTime) {
    const std::string whole = PaintedFont();
    const std::size_t table = whole.find("COLR");
    ASSERT_NE(table, std::string::npos);
    std::size_t start = 0;
    for (std::size_t i = 8; i < 12; ++i) start = start << 8 | static_cast<unsigned char>(whole[table + i]);
    for (std::size_t at = start; at < start + 448; ++at) {
        for (const char change : {'\x01', '\x7F', '\xFF'}) {
            std::string wrong = whole;
            wrong[at] = static_cast<char>(wrong[at] ^ change);
            const auto face = ORVOpenDocumentFont({wrong, "t"});
            if (!face) continue;
            for (std::uint32_t glyph = 2; glyph < 15; ++glyph) {
                Sketch sketch;
                ORVPaintGlyph(*face, glyph, sketch);
                EXPECT_LT(sketch.text.size(), 200'000U);
            }
        }
    }
}

}  // namespace
