// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/text_shaper.h"

#include <cmath>
#include <cstddef>
#include <mutex>

#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/module/Shaper.h"
#include "platform/visualization/fonts/module/file_face.h"
#include "platform/visualization/fonts/module/font_catalogue.h"
#include "platform/visualization/fonts/module/font_failure.h"

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 22;
constexpr int kRightToLeftMode = 1, kTopToBottomMode = 2;
// Far beyond any drawing, and small enough that no product or sum overflows.
constexpr double kLargestSize = 1e30;
constexpr int kLeastBoldWeight = 600;  // as OpenType counts it

struct Settings {
    const FileFace* face = nullptr;
    bool vertical = false, rightToLeftBase = false, bold = false;
    double height = 0.0, spacing = 0.0, expansion = 1.0;
};

bool IsDrawable(const ORVTextStyle& style) { return style.height > 0.0 && style.height <= kLargestSize; }

/// Throws when the font cannot be used, since text must not silently appear in another font.
const FileFace* ChooseFace(const ORVTextStyle& style) {
    if (style.font == ORVFont::Unavailable())
        throw FontFailure({"the fonts could not be looked for when the drawing was read; print it again"});
    FontCatalogue& catalogue = FontCatalogue::Get();
    const ORVFont* const font = style.font ? style.font : catalogue.FindByName("arial.ttf");
    const ORVFontFace* const face = font ? font->GetFace(style.weight) : nullptr;
    return &UsableFace(face);
}

Settings SettingsOf(const ORVTextStyle& style) {
    Settings settings;
    settings.face = ChooseFace(style);
    settings.vertical = style.writingMode == kTopToBottomMode;
    settings.rightToLeftBase = style.writingMode == kRightToLeftMode;
    settings.bold = style.weight == 26 || style.weight == 27;
    settings.height = style.height;
    settings.spacing = std::fabs(style.extraSpacing) <= kLargestSize ? style.extraSpacing : 0.0;
    settings.expansion = style.expansion > 0.0 && style.expansion <= kLargestSize ? style.expansion : 1.0;
    return settings;
}

void Shape(Shaper& shaper, std::string_view utf8, const Settings& settings) {
    // Letters with extra spacing do not form ligatures.
    constexpr hb_tag_t kLigatures = HB_TAG('l', 'i', 'g', 'a'), kContextual = HB_TAG('c', 'l', 'i', 'g');
    static const hb_feature_t kApart[] = {
        {kLigatures, 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        {kContextual, 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
    };
    ShapingFont font;
    font.face = settings.face;
    font.isVertical = settings.vertical;
    if (settings.spacing != 0.0) font.features = kApart;
    shaper.Take(utf8.substr(0, kMostBytes));
    const ShapingPart part{shaper.CountCharacters(), &font};
    const ShapingParagraph paragraph{shaper.CountCharacters(), settings.rightToLeftBase};
    shaper.Shape({&part, 1}, {&paragraph, 1}, {});
}

/// Advance along the writing direction; used for both measuring and layout.
double Advance(const Shaper& shaper, const Settings& settings) {
    double em = 0.0;
    for (const ShapedGlyph& glyph : shaper.GetGlyphs()) em += glyph.step;
    const std::size_t clusters = shaper.CountClusters();
    const double gaps = clusters > 1 ? static_cast<double>(clusters - 1) : 0.0;
    return em * settings.height * (settings.vertical ? 1.0 : settings.expansion) + gaps * settings.spacing;
}

void PlaceItem(const Shaper& shaper, const ShapedItem& item, const Settings& settings, double& pen,
               bool& isFirstCluster, ORVGlyphRun& run) {
    run.face = item.face;
    run.size = settings.height;
    run.expansion = settings.expansion;
    run.vertical = settings.vertical;
    run.rightToLeft = item.IsRightToLeft();
    run.syntheticBold = settings.bold && item.face->GetWeight() < kLeastBoldWeight;
    run.glyphs.reserve(item.endGlyph - item.firstGlyph);
    const double xUnit = settings.height * settings.expansion, yUnit = settings.height;
    const std::vector<ShapedGlyph>& glyphs = shaper.GetGlyphs();
    for (std::size_t i = item.firstGlyph; i < item.endGlyph; ++i) {
        const ShapedGlyph& shaped = glyphs[i];
        const bool startsCluster = i == item.firstGlyph || glyphs[i - 1].cluster != shaped.cluster;
        if (!item.Continues(shaped.cluster)) {
            if (startsCluster && !isFirstCluster) pen += settings.spacing;
            isFirstCluster = false;
        }

        ORVGlyph& glyph = run.glyphs.emplace_back();
        glyph.index = shaped.index;
        glyph.x = (settings.vertical ? 0.0 : pen) + shaped.dx * xUnit;
        glyph.y = (settings.vertical ? -pen : 0.0) + shaped.dy * yUnit;
        glyph.advance = shaped.step * (settings.vertical ? yUnit : xUnit);
        glyph.textOffset = shaper.OffsetOf(shaped.cluster);
        if (startsCluster) glyph.textLength = shaper.OffsetOf(shaper.ClusterEnd(item, i)) - glyph.textOffset;
        pen += glyph.advance;
    }
}

/// Places the glyphs of all items in visual order.
void Place(Shaper& shaper, const Settings& settings, ORVTextLayout& layout) {
    if (!settings.vertical) shaper.OrderVisually();
    layout.runs.reserve(shaper.GetItems().size());
    double pen = 0.0;
    bool isFirstCluster = true;
    for (const ShapedItem& item : shaper.GetItems())
        if (item.firstGlyph != item.endGlyph)
            PlaceItem(shaper, item, settings, pen, isFirstCluster, layout.runs.emplace_back());
}

ORVTextExtent Extent(const Shaper& shaper, const Settings& settings) {
    return {Advance(shaper, settings), settings.face->GetAscent() * settings.height,
            settings.face->GetDescent() * settings.height};
}

}  // namespace

ORVTextLayout LayOutText(std::string_view utf8, const ORVTextStyle& style) {
    if (!IsDrawable(style)) return {};
    const Settings settings = SettingsOf(style);

    const std::lock_guard lock(Shaper::GetLock());
    Shaper& shaper = Shaper::Get();
    Shape(shaper, utf8, settings);
    const ORVTextExtent extent = Extent(shaper, settings);
    ORVTextLayout layout{{}, extent.advance, extent.ascent, extent.descent};
    Place(shaper, settings, layout);
    shaper.Trim();
    return layout;
}

ORVTextExtent MeasureText(std::string_view utf8, const ORVTextStyle& style) {
    if (!IsDrawable(style)) return {};
    const Settings settings = SettingsOf(style);

    const std::lock_guard lock(Shaper::GetLock());
    Shaper& shaper = Shaper::Get();
    Shape(shaper, utf8, settings);
    const ORVTextExtent extent = Extent(shaper, settings);
    shaper.Trim();
    return extent;
}
