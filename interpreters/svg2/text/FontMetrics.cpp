// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/FontMetrics.h"

#include <cstddef>
#include <cstdint>

#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/glyph_picture.h"

namespace svg2 {
namespace {

/// A signed number of 16 bits in a table of a font file; 0 behind its end.
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

TextFont TextFonts::Find(const ORVFontQuery& query) {
    const bool isLast = hasLast_ && query.families.data() == last_.families.data() &&
                        query.families.size() == last_.families.size() && query.weight == last_.weight &&
                        query.isItalic == last_.isItalic && query.stretch == last_.stretch &&
                        (query.size == last_.size || !lastFont_.choice.dependsOnSize) &&
                        query.variations.data() == last_.variations.data() &&
                        query.variations.size() == last_.variations.size();
    if (isLast) return lastFont_;
    TextFont font;
    font.choice = ORVChooseFont(query);
    const ORVFontFace* face = font.choice.face;
    if (face) {
        const auto [entry, isNew] = metrics_.try_emplace(face);
        if (isNew) entry->second = ReadMetrics(*face);
        font.metrics = entry->second;
    }
    last_ = query;
    lastFont_ = font;
    hasLast_ = true;
    return font;
}

bool TextFonts::HasColours(const ORVFontFace& face) {
    if (&face == lastPlain_) return false;
    const auto [entry, isNew] = hasColours_.try_emplace(&face);
    if (isNew) entry->second = ORVHasColours(face);
    if (!entry->second) lastPlain_ = &face;
    return entry->second;
}

}  // namespace svg2
