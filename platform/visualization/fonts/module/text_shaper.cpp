// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/text_shaper.h"

#include <fribidi.h>
#include <hb.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <mutex>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/module/fallback_fonts.h"
#include "platform/visualization/fonts/module/file_face.h"
#include "platform/visualization/fonts/module/font_catalogue.h"
#include "platform/visualization/fonts/module/font_failure.h"

namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 22;
constexpr char32_t kReplacement = 0xFFFD, kZeroWidthSpace = 0x200B;
// Marks that are set with their letter. No writing system has more; Unicode's stream-safe texts have as many.
constexpr std::uint32_t kMostMarks = 30;
constexpr std::uint32_t kNoMark = 0xFFFFFFFF;
constexpr int kRightToLeftMode = 1, kTopToBottomMode = 2;
// Far beyond any drawing, and small enough for every product and sum of ours to stay a number.
constexpr double kLargestSize = 1e30;
constexpr int kLeastBoldWeight = 600;  // as OpenType counts it
// Nothing below stands for text that is read from right to left.
constexpr char32_t kFirstRightToLeft = 0x0590;

/// Reads the code point that starts at `at` and moves on. Bytes that are not UTF-8 give one U+FFFD each.
char32_t TakeCodePoint(std::string_view text, std::size_t& at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char first = byte(at++);
    if (first < 0x80) return first;
    const int more = first >= 0xC2 && first <= 0xDF   ? 1
                     : (first & 0xF0) == 0xE0         ? 2
                     : first >= 0xF0 && first <= 0xF4 ? 3
                                                      : 0;
    if (more == 0) return kReplacement;
    char32_t value = first & (0x3Fu >> more);
    std::size_t next = at;
    for (int i = 0; i < more; ++i, ++next) {
        if (next >= text.size() || (byte(next) & 0xC0) != 0x80) return kReplacement;
        value = value << 6 | (byte(next) & 0x3Fu);
    }
    constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
    if (value < kLeast[more] || value > 0x10FFFF || (value >= 0xD800 && value < 0xE000)) return kReplacement;
    at = next;
    return value;
}

bool IsControl(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

/// Characters that shape others and are not seen themselves; no font needs to have them.
bool IsInvisible(char32_t c) {
    return c == 0xAD || c == 0x34F || c == 0x61C || (c >= 0x200B && c <= 0x200F) ||
           (c >= 0x2028 && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || (c >= 0xFE00 && c <= 0xFE0F) ||
           c == 0xFEFF || (c >= 0xE0000 && c <= 0xE0FFF);
}

/// Spaces that are made of the font's own one where it has no glyph for them.
bool IsSpaceVariant(char32_t c) {
    return c == 0xA0 || (c >= 0x2000 && c <= 0x200A) || c == 0x202F || c == 0x205F;
}

bool IsMark(char32_t c) {
    if (c < 0x300) return false;
    switch (hb_unicode_general_category(hb_unicode_funcs_get_default(), c)) {
        case HB_UNICODE_GENERAL_CATEGORY_SPACING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_ENCLOSING_MARK:
        case HB_UNICODE_GENERAL_CATEGORY_NON_SPACING_MARK: return true;
        default: return false;
    }
}

/// A stretch of text of one face, script and direction.
struct Item {
    std::size_t first = 0, end = 0;  // characters
    const FileFace* face = nullptr;
    hb_script_t script = HB_SCRIPT_COMMON;
    FriBidiLevel level = 0;
    bool continues = false;  // begins with marks of a letter that stands before
    std::size_t firstGlyph = 0, endGlyph = 0;
    bool IsRightToLeft() const { return level % 2 == 1; }
};

/// A glyph as it comes from shaping, in em of its face.
struct ShapedGlyph {
    std::uint32_t index, cluster;  // the cluster is a character
    double dx, dy, step;
};

struct Settings {
    const FileFace* face = nullptr;
    bool vertical = false, rightToLeftBase = false, bold = false;
    double height = 0.0, spacing = 0.0, expansion = 1.0;
};

bool IsDrawable(const ORVTextStyle& style) { return style.height > 0.0 && style.height <= kLargestSize; }

/// Throws where the font cannot be had: in another one the text would be another text.
const FileFace* ChooseFace(const ORVTextStyle& style) {
    if (style.font == ORVFont::Unavailable())
        throw FontFailure({"the fonts could not be looked for when the drawing was read; print it again"});
    FontCatalogue& catalogue = FontCatalogue::Get();
    const ORVFont* const font = style.font ? style.font : catalogue.FindByName("arial.ttf");
    const ORVFontFace* const face = font ? font->GetFace(style.weight) : nullptr;
    if (!face) throw FontFailure({"no font is installed; install one, such as Debian's fonts-liberation"});
    const auto* const file = static_cast<const FileFace*>(face);
    if (!file->GetHarfBuzzFont())
        throw FontFailure(
            {"the font ", file->GetFilePath(), " is damaged; install it anew, or run fc-cache"});
    return file;
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

/// Turns text into shaped items. Keeps its arrays from one text to the next; for one thread at a time.
class Shaper {
public:
    void Shape(std::string_view text, const Settings& settings) {
        if (!buffer_) buffer_ = hb_buffer_create();
        if (!hb_buffer_allocation_successful(buffer_)) throw std::bad_alloc();
        Decode(text.substr(0, kMostBytes));
        FindLevels(settings);
        FindScripts();
        FindFaces(*settings.face);
        MakeItems();
        glyphs_.clear();
        clusterCount_ = 0;
        for (Item& item : items_) ShapeItem(item, settings);
    }

    /// Drops what an unusually long text has left behind.
    void Trim() {
        constexpr std::size_t kUsualLength = 1 << 16;
        if (text_.characters.capacity() <= kUsualLength && glyphs_.capacity() <= kUsualLength) return;
        text_ = {};
        items_ = {};
        glyphs_ = {};
        hb_buffer_destroy(buffer_);
        buffer_ = hb_buffer_create();
    }

    /// Length along the writing direction, the same for measuring and for laying out.
    double Advance(const Settings& settings) const {
        double em = 0.0;
        for (const ShapedGlyph& glyph : glyphs_) em += glyph.step;
        const double gaps = clusterCount_ > 1 ? static_cast<double>(clusterCount_ - 1) : 0.0;
        return em * settings.height * (settings.vertical ? 1.0 : settings.expansion) +
               gaps * settings.spacing;
    }

    /// Places the glyphs of all items, in the order in which they are seen.
    void Place(const Settings& settings, ORVTextLayout& layout) {
        if (!settings.vertical) OrderVisually();
        layout.runs.reserve(items_.size());
        double pen = 0.0;
        bool isFirstCluster = true;
        for (const Item& item : items_)
            if (item.firstGlyph != item.endGlyph)
                PlaceItem(item, settings, pen, isFirstCluster, layout.runs.emplace_back());
    }

private:
    void Decode(std::string_view text) {
        text_.characters.clear();
        text_.offsets.clear();
        for (std::size_t at = 0; at < text.size();) {
            text_.offsets.push_back(static_cast<std::uint32_t>(at));
            const char32_t c = TakeCodePoint(text, at);
            text_.characters.push_back(IsControl(c) ? kZeroWidthSpace : c);
        }
        text_.offsets.push_back(static_cast<std::uint32_t>(text.size()));
    }

    void FindLevels(const Settings& settings) {
        const FriBidiLevel base = settings.rightToLeftBase ? 1 : 0;
        text_.levels.assign(text_.characters.size(), base);
        if (settings.vertical || text_.characters.empty()) return;
        const bool hasOnlyLeftToRight = std::all_of(text_.characters.begin(), text_.characters.end(),
                                                    [](char32_t c) { return c < kFirstRightToLeft; });
        if (base == 0 && hasOnlyLeftToRight) return;

        const auto count = static_cast<FriBidiStrIndex>(text_.characters.size());
        text_.bidiTypes.resize(text_.characters.size());
        text_.bracketTypes.resize(text_.characters.size());
        const FriBidiChar* text = text_.characters.data();
        fribidi_get_bidi_types(text, count, text_.bidiTypes.data());
        fribidi_get_bracket_types(text, count, text_.bidiTypes.data(), text_.bracketTypes.data());
        FriBidiParType direction = settings.rightToLeftBase ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
        // White space at the end of the line gets the line's own level here, too.
        if (fribidi_get_par_embedding_levels_ex(text_.bidiTypes.data(), text_.bracketTypes.data(), count,
                                                &direction, text_.levels.data()) == 0)
            throw std::bad_alloc();
    }

    /// Characters that many scripts share take the script of what stands before them, at the start that of
    /// what follows.
    void FindScripts() {
        text_.scripts.resize(text_.characters.size());
        hb_script_t current = HB_SCRIPT_COMMON;
        for (std::size_t i = 0; i < text_.characters.size(); ++i) {
            const hb_script_t script = hb_unicode_script(hb_unicode_funcs_get_default(), text_.characters[i]);
            if (script != HB_SCRIPT_COMMON && script != HB_SCRIPT_INHERITED && script != HB_SCRIPT_UNKNOWN) {
                if (current == HB_SCRIPT_COMMON)
                    std::fill(text_.scripts.begin(), text_.scripts.begin() + static_cast<std::ptrdiff_t>(i),
                              script);
                current = script;
            }
            text_.scripts[i] = current;
        }
    }

    const FileFace& FaceFor(const FileFace& base, char32_t c) {
        if (base.GetGlyph(c) || (IsSpaceVariant(c) && base.GetGlyph(' '))) return base;
        const FileFace* other = fallback_.Find(base, c);
        return other ? *other : base;
    }

    /// A mark is drawn with the face of its base character. Where that has no such mark, a face for the mark
    /// takes both, if it can.
    void FindFaces(const FileFace& base) {
        text_.faces.resize(text_.characters.size());
        text_.marksBefore.assign(text_.characters.size(), kNoMark);
        std::size_t clusterStart = 0;
        std::uint32_t marks = 0;
        for (std::size_t i = 0; i < text_.characters.size(); ++i) {
            const char32_t c = text_.characters[i];
            if (IsInvisible(c)) {
                text_.faces[i] = i > 0 ? text_.faces[i - 1] : &base;
                text_.marksBefore[i] = marks++;
                continue;
            }
            const bool isMark = IsMark(c);
            if (isMark) text_.marksBefore[i] = marks++;
            if (!isMark) marks = 0;
            if (i == 0 || !isMark) {
                clusterStart = i;
                text_.faces[i] = &FaceFor(base, c);
                continue;
            }
            text_.faces[i] = text_.faces[i - 1];
            if (text_.faces[i]->GetGlyph(c)) continue;
            const FileFace& other = FaceFor(base, c);
            // Clusters are short; of a run of hundreds of marks the first decide.
            constexpr std::size_t kLongestCluster = 16;
            const std::size_t length = i - clusterStart;
            if (length > kLongestCluster) continue;
            const bool hasAll =
                std::all_of(text_.characters.begin() + static_cast<std::ptrdiff_t>(clusterStart),
                            text_.characters.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                            [&](char32_t one) { return IsInvisible(one) || other.GetGlyph(one); });
            if (hasAll)
                std::fill_n(text_.faces.begin() + static_cast<std::ptrdiff_t>(clusterStart), length + 1,
                            &other);
        }
    }

    /// Whether so many marks stand before this one that it begins a piece of its own: the shaper's time grows
    /// with the square of their number.
    bool IsLongRun(std::size_t i) const {
        const std::uint32_t before = text_.marksBefore[i];
        return before != kNoMark && before > 0 && before % kMostMarks == 0;
    }

    void MakeItems() {
        items_.clear();
        for (std::size_t i = 0; i < text_.characters.size(); ++i) {
            const bool splits = IsLongRun(i);
            if (items_.empty() || splits || items_.back().face != text_.faces[i] ||
                items_.back().script != text_.scripts[i] || items_.back().level != text_.levels[i])
                items_.push_back({i, i, text_.faces[i], text_.scripts[i], text_.levels[i],
                                  splits && IsMark(text_.characters[i])});
            items_.back().end = i + 1;
        }
    }

    static hb_direction_t DirectionOf(const Item& item, const Settings& settings) {
        if (settings.vertical) return HB_DIRECTION_TTB;
        return item.IsRightToLeft() ? HB_DIRECTION_RTL : HB_DIRECTION_LTR;
    }

    void ShapeItem(Item& item, const Settings& settings) {
        item.firstGlyph = item.endGlyph = glyphs_.size();
        hb_font_t* const font = item.face->GetHarfBuzzFont();
        if (!font) return;
        item.face->PrepareFor(item.script, DirectionOf(item, settings));
        hb_buffer_clear_contents(buffer_);
        // What goes on with marks has its letter in the piece before.
        hb_buffer_set_flags(
            buffer_, item.continues ? HB_BUFFER_FLAG_DO_NOT_INSERT_DOTTED_CIRCLE : HB_BUFFER_FLAG_DEFAULT);
        // The whole text is given, so that letters join across the item's borders.
        hb_buffer_add_codepoints(buffer_, text_.characters.data(), static_cast<int>(text_.characters.size()),
                                 static_cast<unsigned int>(item.first),
                                 static_cast<int>(item.end - item.first));
        hb_buffer_set_direction(buffer_, DirectionOf(item, settings));
        hb_buffer_set_script(buffer_, item.script);
        static const hb_language_t kUndetermined = hb_language_from_string("und", -1);
        hb_buffer_set_language(buffer_, kUndetermined);
        // Letters that are set apart do not become one.
        constexpr hb_tag_t kLigatures = HB_TAG('l', 'i', 'g', 'a'), kContextual = HB_TAG('c', 'l', 'i', 'g');
        const hb_feature_t apart[] = {
            {kLigatures, 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
            {kContextual, 0, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END},
        };
        const bool isShaped =
            hb_shape_full(font, buffer_, apart, settings.spacing != 0.0 ? 2 : 0, nullptr) != 0;
        if (!isShaped || !hb_buffer_allocation_successful(buffer_)) throw std::bad_alloc();
        CollectGlyphs(item, font, settings);
    }

    /// Whether a cluster goes on with the marks of the one before.
    static bool Continues(const Item& item, std::size_t cluster) {
        return item.continues && cluster == item.first;
    }

    void CollectGlyphs(Item& item, hb_font_t* font, const Settings& settings) {
        int horizontalScale = 0, verticalScale = 0;
        hb_font_get_scale(font, &horizontalScale, &verticalScale);
        const double em = horizontalScale > 0 ? horizontalScale : 1000.0;
        unsigned int count = 0, positionCount = 0;
        const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer_, &count);
        const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer_, &positionCount);
        count = std::min(count, positionCount);
        for (unsigned int i = 0; i < count; ++i) {
            if ((i == 0 || infos[i].cluster != infos[i - 1].cluster) && !Continues(item, infos[i].cluster))
                ++clusterCount_;
            const double step = settings.vertical ? -positions[i].y_advance : positions[i].x_advance;
            glyphs_.push_back({infos[i].codepoint, infos[i].cluster, positions[i].x_offset / em,
                               positions[i].y_offset / em, step / em});
        }
        item.endGlyph = glyphs_.size();
    }

    /// Reverses, from the highest level down, every stretch of items of that level or a higher one.
    void OrderVisually() {
        int highest = 0, lowestOdd = 1;
        for (const Item& item : items_) highest = std::max<int>(highest, item.level);
        for (int level = highest; level >= lowestOdd; --level) {
            for (auto first = items_.begin(); first != items_.end();) {
                first = std::find_if(first, items_.end(),
                                     [level](const Item& item) { return item.level >= level; });
                const auto end = std::find_if(first, items_.end(),
                                              [level](const Item& item) { return item.level < level; });
                std::reverse(first, end);
                first = end;
            }
        }
    }

    void PlaceItem(const Item& item, const Settings& settings, double& pen, bool& isFirstCluster,
                   ORVGlyphRun& run) const {
        run.face = item.face;
        run.size = settings.height;
        run.expansion = settings.expansion;
        run.vertical = settings.vertical;
        run.rightToLeft = item.IsRightToLeft();
        run.syntheticBold = settings.bold && item.face->GetWeight() < kLeastBoldWeight;
        run.glyphs.reserve(item.endGlyph - item.firstGlyph);
        const double xUnit = settings.height * settings.expansion, yUnit = settings.height;
        for (std::size_t i = item.firstGlyph; i < item.endGlyph; ++i) {
            const ShapedGlyph& shaped = glyphs_[i];
            const bool startsCluster = i == item.firstGlyph || glyphs_[i - 1].cluster != shaped.cluster;
            if (!Continues(item, shaped.cluster)) {
                if (startsCluster && !isFirstCluster) pen += settings.spacing;
                isFirstCluster = false;
            }

            ORVGlyph& glyph = run.glyphs.emplace_back();
            glyph.index = shaped.index;
            glyph.x = (settings.vertical ? 0.0 : pen) + shaped.dx * xUnit;
            glyph.y = (settings.vertical ? -pen : 0.0) + shaped.dy * yUnit;
            glyph.advance = shaped.step * (settings.vertical ? yUnit : xUnit);
            glyph.textOffset = text_.offsets[shaped.cluster];
            if (startsCluster) glyph.textLength = text_.offsets[ClusterEnd(item, i)] - glyph.textOffset;
            pen += glyph.advance;
        }
    }

    /// The character after the cluster that starts with glyph `i`.
    std::size_t ClusterEnd(const Item& item, std::size_t i) const {
        const std::uint32_t cluster = glyphs_[i].cluster;
        if (item.IsRightToLeft()) return i == item.firstGlyph ? item.end : glyphs_[i - 1].cluster;
        std::size_t next = i + 1;
        while (next < item.endGlyph && glyphs_[next].cluster == cluster) ++next;
        return next == item.endGlyph ? item.end : glyphs_[next].cluster;
    }

    /// What is known of each character.
    struct Text {
        std::vector<std::uint32_t> characters;
        std::vector<std::uint32_t> offsets;  // where it begins in the bytes; one more for the end
        std::vector<FriBidiLevel> levels;
        std::vector<FriBidiCharType> bidiTypes;
        std::vector<FriBidiBracketType> bracketTypes;
        std::vector<hb_script_t> scripts;
        std::vector<const FileFace*> faces;
        std::vector<std::uint32_t> marksBefore;  // of its run of marks; kNoMark for other characters
    };
    Text text_;
    std::vector<Item> items_;
    std::vector<ShapedGlyph> glyphs_;
    std::size_t clusterCount_ = 0;
    hb_buffer_t* buffer_ = nullptr;  // made for the first text
    FallbackFonts fallback_;
};

std::mutex shaperMutex;

Shaper& TheShaper() {
    static Shaper* const shaper = new Shaper;
    return *shaper;
}

ORVTextExtent Extent(const Shaper& shaper, const Settings& settings) {
    return {shaper.Advance(settings), settings.face->GetAscent() * settings.height,
            settings.face->GetDescent() * settings.height};
}

}  // namespace

ORVTextLayout LayOutText(std::string_view utf8, const ORVTextStyle& style) {
    if (!IsDrawable(style)) return {};
    const Settings settings = SettingsOf(style);

    const std::lock_guard lock(shaperMutex);
    Shaper& shaper = TheShaper();
    shaper.Shape(utf8, settings);
    const ORVTextExtent extent = Extent(shaper, settings);
    ORVTextLayout layout{{}, extent.advance, extent.ascent, extent.descent};
    shaper.Place(settings, layout);
    shaper.Trim();
    return layout;
}

ORVTextExtent MeasureText(std::string_view utf8, const ORVTextStyle& style) {
    if (!IsDrawable(style)) return {};
    const Settings settings = SettingsOf(style);

    const std::lock_guard lock(shaperMutex);
    Shaper& shaper = TheShaper();
    shaper.Shape(utf8, settings);
    const ORVTextExtent extent = Extent(shaper, settings);
    shaper.Trim();
    return extent;
}
