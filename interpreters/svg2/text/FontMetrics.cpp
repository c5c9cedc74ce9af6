// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/FontMetrics.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "interpreters/svg2/tree/DocumentFonts.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/glyph_bitmap.h"

namespace svg2 {
namespace {

/// Reads a signed 16-bit number from a font table; 0 beyond its end.
double NumberAt(std::string_view table, std::size_t offset) {
    if (offset + 2 > table.size()) return 0.0;
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(table[i]); };
    return static_cast<std::int16_t>(byte(offset) << 8U | byte(offset + 1));
}

FontMetrics ReadMetrics(const ORVFontFace& face) {
    FontMetrics metrics;
    metrics.ascent = face.GetAscent();
    metrics.descent = face.GetDescent();
    const double em = face.GetUnitsPerEm();
    const ORVFontBytes post = face.GetTable("post"), os2 = face.GetTable("OS/2");
    if (const double thickness = NumberAt(post.bytes, 10); thickness > 0.0) {
        metrics.underlineThickness = thickness / em;
        metrics.underline = NumberAt(post.bytes, 8) / em - metrics.underlineThickness / 2.0;
    }
    if (const double height = NumberAt(os2.bytes, 86); height > 0.0) metrics.xHeight = height / em;
    metrics.statedXHeight = std::max(NumberAt(os2.bytes, 86), 0.0) / em;
    metrics.statedCapHeight = std::max(NumberAt(os2.bytes, 88), 0.0) / em;
    if (const double thickness = NumberAt(os2.bytes, 26); thickness > 0.0) {
        metrics.strikeoutThickness = thickness / em;
        metrics.strikeout = NumberAt(os2.bytes, 28) / em - metrics.strikeoutThickness / 2.0;
    } else {
        metrics.strikeout = metrics.xHeight / 2.0;
    }
    if (const double offset = NumberAt(os2.bytes, 16); offset > 0.0) metrics.subscript = offset / em;
    if (const double offset = NumberAt(os2.bytes, 24); offset > 0.0) metrics.superscript = offset / em;
    return metrics;
}

}  // namespace

TextFont TextFonts::Find(const ORVFontQuery& query, DocumentFonts* own) {
    const bool isLast = hasLast_ && own == lastOwn_ && query.families.data() == last_.families.data() &&
                        query.families.size() == last_.families.size() && query.weight == last_.weight &&
                        query.isItalic == last_.isItalic && query.stretch == last_.stretch &&
                        (query.size == last_.size || !lastFont_.choice.dependsOnSize) &&
                        query.variations.data() == last_.variations.data() &&
                        query.variations.size() == last_.variations.size();
    if (isLast) return lastFont_;
    TextFont font;
    const OrderedFont* const brought = own ? own->Choose(query) : nullptr;
    font.choice = brought ? brought->choice : ORVChooseFont(query);
    if (brought) font.order = brought->order;
    const ORVFontFace* face = font.choice.face;
    if (face) {
        const auto [entry, isNew] = metrics_.try_emplace(face);
        if (isNew) entry->second = ReadMetrics(*face);
        font.metrics = entry->second;
    }
    last_ = query;
    lastOwn_ = own;
    lastFont_ = font;
    hasLast_ = true;
    return font;
}

namespace {

/// Advance width of a character, in em.
double WidthOf(const ORVFontFace* face, char32_t c, double byDefault) {
    const std::uint32_t glyph = face ? face->GetGlyph(c) : 0;
    return glyph == 0 ? byDefault : face->GetAdvance(glyph);
}

/// Finds the height of an outline.
class HighestPoint final : public ORVGlyphOutlineSink {
public:
    double GetHeight() const { return height_; }
    void MoveTo(double /*x*/, double y) override { height_ = std::max(height_, y); }
    void LineTo(double /*x*/, double y) override { height_ = std::max(height_, y); }
    void QuadTo(double /*controlX*/, double /*controlY*/, double x, double y) override { LineTo(x, y); }
    void CubicTo(double /*control1X*/, double /*control1Y*/, double /*control2X*/, double /*control2Y*/,
                 double x, double y) override {
        LineTo(x, y);
    }
    void Close() override {}

private:
    double height_ = 0.0;
};

/// The height stated by the font, otherwise that of a letter, in em.
double HeightOf(const ORVFontFace* face, double stated, char32_t letter, double byDefault) {
    if (stated > 0.0 || !face) return stated > 0.0 ? stated : byDefault;
    const std::uint32_t glyph = face->GetGlyph(letter);
    HighestPoint highest;
    if (glyph == 0 || !face->DrawGlyph(glyph, 1.0, highest) || highest.GetHeight() <= 0.0) return byDefault;
    return highest.GetHeight();
}

/// A metric of a font, in em, guarded against implausibly small ones.
double Measured(FontSizeAdjustment::Measure measure, const TextFont& font) {
    using Measure = FontSizeAdjustment::Measure;
    constexpr char32_t kIdeograph = U'\u6C34';
    constexpr double kLeast = 0.01;
    const ORVFontFace* const face = font.choice.face;
    const FontMetrics& metrics = font.metrics;
    double em = 0.0;
    switch (measure) {
        case Measure::kExHeight: em = HeightOf(face, metrics.statedXHeight, U'x', 0.5); break;
        case Measure::kCapHeight: em = HeightOf(face, metrics.statedCapHeight, U'H', metrics.ascent); break;
        case Measure::kZeroWidth: em = WidthOf(face, U'0', 0.5); break;
        case Measure::kIdeographWidth: em = WidthOf(face, kIdeograph, 1.0); break;
    }
    return std::max(em, kLeast);
}

}  // namespace

void TextFonts::Adjust(const FontSizeAdjustment& adjustment, DocumentFonts* own, TextFont& font) {
    double target = adjustment.value;
    if (const FontKey* const key = adjustment.font.get())
        target = Measured(
            adjustment.measure,
            Find({key->family, key->weight, key->isItalic, key->stretch, key->size, key->variations}, own));
    font.enlargement = target / Measured(adjustment.measure, font);
}

bool TextFonts::HasColours(const ORVFontFace& face) {
    if (&face == lastPlain_) return false;
    const auto known = hasColours_.find(&face);
    const bool has = known != hasColours_.end() ? known->second
                                                : ORVHasColours(face) || !face.GetTable("SVG ").bytes.empty();
    if (known == hasColours_.end()) hasColours_.emplace(&face, has);
    if (!has) lastPlain_ = &face;
    return has;
}

bool TextFonts::HasImages(const ORVFontFace& face) {
    const auto known = hasImages_.find(&face);
    if (known != hasImages_.end()) return known->second;
    const bool has = !face.GetTable("CBDT").bytes.empty() || !face.GetTable("sbix").bytes.empty();
    return hasImages_.emplace(&face, has).first->second;
}

}  // namespace svg2
