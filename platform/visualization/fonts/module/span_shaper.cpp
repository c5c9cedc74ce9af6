// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/span_shaper.h"

#include <hb-ot.h>

#include <algorithm>
#include <cstddef>
#include <mutex>

#include "platform/visualization/fonts/module/Shaper.h"
#include "platform/visualization/fonts/module/file_face.h"
#include "platform/visualization/fonts/module/font_failure.h"

namespace {

constexpr int kLeastBoldWeight = 600;  // as OpenType counts it

/// Whether a script joins its letters, so that letter spacing would break the joins.
bool IsCursive(hb_script_t script) {
    switch (script) {
        case HB_SCRIPT_ARABIC:
        case HB_SCRIPT_SYRIAC:
        case HB_SCRIPT_MONGOLIAN:
        case HB_SCRIPT_NKO:
        case HB_SCRIPT_PHAGS_PA:
        case HB_SCRIPT_MANDAIC:
        case HB_SCRIPT_MANICHAEAN:
        case HB_SCRIPT_PSALTER_PAHLAVI:
        case HB_SCRIPT_ADLAM:
        case HB_SCRIPT_HANIFI_ROHINGYA:
        case HB_SCRIPT_SOGDIAN: return true;
        default: return false;
    }
}

/// The fonts of a text in the form that the shaper requires.
class Fonts {
public:
    /// The parts in the shaper's form.
    std::vector<ShapingPart> Convert(std::span<const ORVShapingPart> parts) {
        std::size_t featureCount = 0, fontCount = 0, faceCount = 0;
        const ORVShapingFont* last = nullptr;
        for (const ORVShapingPart& part : parts) {
            if (part.font == last) continue;
            last = part.font;
            featureCount += last->features.size();
            faceCount += last->order.size();
            ++fontCount;
        }
        features_.reserve(featureCount);  // reserved, because views of it are handed out
        fonts_.reserve(fontCount);
        faces_.reserve(faceCount);
        std::vector<ShapingPart> converted;
        converted.reserve(parts.size());
        last = nullptr;
        for (const ORVShapingPart& part : parts) {
            if (part.font != last) Add(*part.font);
            last = part.font;
            converted.push_back({part.end, &fonts_.back()});
        }
        return converted;
    }

private:
    void Add(const ORVShapingFont& font) {
        ShapingFont& added = fonts_.emplace_back();
        added.face = &UsableFace(font.face);
        added.isVertical = font.isVertical;
        for (const ORVFontFace* face : font.order) faces_.push_back(&UsableFace(face));
        added.order = {faces_.data() + faces_.size() - font.order.size(), font.order.size()};
        const std::size_t first = features_.size();
        for (const ORVFontFeature& feature : font.features)
            features_.push_back({feature.tag, feature.value, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END});
        added.features = {features_.data() + first, features_.size() - first};
    }

    std::vector<hb_feature_t> features_;
    std::vector<const FileFace*> faces_;
    std::vector<ShapingFont> fonts_;
};

/// For fonts without vertical metrics: glyphs are spaced by one em and centred in it vertically.
void SetUpright(const FileFace& face, double size, std::span<ORVShapedGlyph> glyphs) {
    const double middle = (face.GetAscent() - face.GetDescent()) / 2.0;
    for (ORVShapedGlyph& glyph : glyphs) {
        if (glyph.advance == 0.0) continue;
        glyph.advance = size;
        glyph.y = -(0.5 + middle) * size;
    }
}

void AddRun(const Shaper& shaper, const ShapedItem& item, const ORVShapingFont& font, ORVShapedText& shaped) {
    ORVShapedRun& run = shaped.runs.emplace_back();
    run.face = item.face;
    run.first = static_cast<std::uint32_t>(item.first);
    run.end = static_cast<std::uint32_t>(item.end);
    run.part = static_cast<std::uint32_t>(item.part);
    run.paragraph = static_cast<std::uint32_t>(item.paragraph);
    run.isRightToLeft = item.IsRightToLeft() && !item.isVertical;
    run.isCursive = IsCursive(item.script);
    run.isToBeThickened = font.isToBeThickened && item.face->GetWeight() < kLeastBoldWeight;
    run.continues = item.continues;
    run.firstGlyph = static_cast<std::uint32_t>(shaped.glyphs.size());
    for (std::size_t i = item.firstGlyph; i < item.endGlyph; ++i) {
        const ShapedGlyph& glyph = shaper.GetGlyphs()[i];
        shaped.glyphs.push_back(
            {glyph.index, glyph.cluster, glyph.dx * font.size, glyph.dy * font.size, glyph.step * font.size});
    }
    run.endGlyph = static_cast<std::uint32_t>(shaped.glyphs.size());
    if (item.isVertical && item.face->GetTable("vmtx").bytes.empty())
        SetUpright(*item.face, font.size, std::span(shaped.glyphs).subspan(run.firstGlyph));
}

}  // namespace

void ShapeText(std::u32string_view text, std::span<const ORVShapingPart> parts,
               std::span<const ORVShapingParagraph> paragraphs, ORVShapedText& shaped) {
    shaped.runs.clear();
    shaped.glyphs.clear();
    if (text.empty()) return;
    Fonts fonts;
    const std::vector<ShapingPart> converted = fonts.Convert(parts);
    std::vector<ShapingParagraph> apart;
    apart.reserve(paragraphs.size());
    for (const ORVShapingParagraph& paragraph : paragraphs)
        apart.push_back({paragraph.end, paragraph.isRightToLeft});

    const std::lock_guard lock(Shaper::GetLock());
    Shaper& shaper = Shaper::Get();
    shaper.Take(text);
    shaper.Shape(converted, apart, {.takesColours = true, .composes = true});
    shaper.OrderVisually();
    shaped.glyphs.reserve(shaper.GetGlyphs().size());
    for (const ShapedItem& item : shaper.GetItems())
        if (item.firstGlyph != item.endGlyph) AddRun(shaper, item, *parts[item.part].font, shaped);
    shaper.Trim();
}

void FindClusterParts(std::u32string_view text, std::vector<bool>& isPart) {
    isPart.assign(text.size(), false);
    for (std::size_t i = 1; i < text.size(); ++i) isPart[i] = IsPartOfCluster(text[i - 1], text[i]);
}

bool HasFontFeature(const ORVFontFace& face, std::uint32_t tag) { return UsableFace(&face).HasFeature(tag); }
