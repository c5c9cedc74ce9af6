// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/Shaper.h"

#include <algorithm>
#include <new>

#include "platform/visualization/fonts/module/font_failure.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD, kZeroWidthSpace = 0x200B;
// Largest number of marks shaped with their letter; the limit of Unicode's Stream-Safe Text Format. No
// writing system needs more.
constexpr std::uint32_t kMostMarks = 30;
constexpr std::uint32_t kNoMark = 0xFFFFFFFF;
// The first code point that can be part of right-to-left text.
constexpr char32_t kFirstRightToLeft = 0x0590;

/// Reads the code point at `at` and advances. Invalid UTF-8 gives one U+FFFD per byte.
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

/// Characters that only affect the shaping of others; fonts need no glyph for them.
bool IsInvisible(char32_t c) {
    return c == 0xAD || c == 0x34F || c == 0x61C || (c >= 0x200B && c <= 0x200F) ||
           (c >= 0x2028 && c <= 0x202E) || (c >= 0x2060 && c <= 0x206F) || (c >= 0xFE00 && c <= 0xFE0F) ||
           c == 0xFEFF || (c >= 0xE0000 && c <= 0xE0FFF);
}

/// Spaces that are synthesised from the font's space when it has no glyph for them.
bool IsSpaceVariant(char32_t c) {
    return c == 0xA0 || (c >= 0x2000 && c <= 0x200A) || c == 0x202F || c == 0x205F;
}

bool HasCharacter(const FileFace& face, char32_t c) {
    return face.GetGlyph(c) != 0 || (IsSpaceVariant(c) && face.GetGlyph(' ') != 0);
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

/// The character that is canonically equivalent to `before` and `mark`; 0 if there is none.
char32_t Composition(char32_t before, char32_t mark) {
    hb_codepoint_t composed = 0;
    return hb_unicode_compose(hb_unicode_funcs_get_default(), before, mark, &composed) ? composed : 0;
}

char32_t WithoutControls(char32_t c) { return IsControl(c) ? kZeroWidthSpace : c; }

hb_direction_t DirectionOf(const ShapedItem& item) {
    if (item.isVertical) return HB_DIRECTION_TTB;
    return item.IsRightToLeft() ? HB_DIRECTION_RTL : HB_DIRECTION_LTR;
}

hb_language_t Undetermined() {
    static const hb_language_t kUndetermined = hb_language_from_string("und", -1);
    return kUndetermined;
}

}  // namespace

bool IsPartOfCluster(char32_t before, char32_t c) {
    constexpr char32_t kJoiner = 0x200D, kFirstSkin = 0x1F3FB, kLastSkin = 0x1F3FF;
    constexpr unsigned int kVirama = 9;  // canonical combining class
    if (c < 0x300) return false;
    if (IsMark(c) || c == kJoiner || before == kJoiner || (c >= kFirstSkin && c <= kLastSkin)) return true;
    if (c >= 0xFE00 && c <= 0xFE0F) return true;
    hb_unicode_funcs_t* const unicode = hb_unicode_funcs_get_default();
    return static_cast<unsigned int>(hb_unicode_combining_class(unicode, before)) == kVirama &&
           hb_unicode_script(unicode, before) == hb_unicode_script(unicode, c);
}

const FileFace& UsableFace(const ORVFontFace* face) {
    if (!face) throw FontFailure({"no font is installed; install one, such as Debian's fonts-liberation"});
    const auto& file = static_cast<const FileFace&>(*face);
    if (!file.GetHarfBuzzFont())
        throw FontFailure({"the font ", file.GetFilePath(), " is damaged; install it anew, or run fc-cache"});
    return file;
}

Shaper& Shaper::Get() {
    static Shaper* const shaper = new Shaper;
    return *shaper;
}

std::mutex& Shaper::GetLock() {
    static std::mutex lock;
    return lock;
}

void Shaper::Take(std::string_view text) {
    text_.characters.clear();
    text_.offsets.clear();
    for (std::size_t at = 0; at < text.size();) {
        text_.offsets.push_back(static_cast<std::uint32_t>(at));
        text_.characters.push_back(WithoutControls(TakeCodePoint(text, at)));
    }
    text_.offsets.push_back(static_cast<std::uint32_t>(text.size()));
}

void Shaper::Take(std::u32string_view text) {
    text_.offsets.clear();
    text_.characters.resize(text.size());
    std::transform(text.begin(), text.end(), text_.characters.begin(), WithoutControls);
}

void Shaper::Shape(std::span<const ShapingPart> parts, std::span<const ShapingParagraph> paragraphs,
                   const Fallback& fallback) {
    rules_ = fallback;
    if (!buffer_) buffer_ = hb_buffer_create();
    if (!hb_buffer_allocation_successful(buffer_)) throw std::bad_alloc();
    FindLevels(parts, paragraphs);
    FindScripts();
    FindFaces(parts);
    MakeItems(parts, paragraphs);
    glyphs_.clear();
    clusterCount_ = 0;
    for (ShapedItem& item : items_) ShapeItem(item);
}

void Shaper::Trim() {
    constexpr std::size_t kUsualLength = 1 << 16;
    if (text_.characters.capacity() <= kUsualLength && glyphs_.capacity() <= kUsualLength) return;
    text_ = {};
    items_ = {};
    glyphs_ = {};
    hb_buffer_destroy(buffer_);
    buffer_ = hb_buffer_create();
}

void Shaper::FindLevels(std::span<const ShapingPart> parts, std::span<const ShapingParagraph> paragraphs) {
    text_.levels.assign(text_.characters.size(), 0);
    // Vertical glyphs are in logical order.
    if (parts.size() == 1 && parts.front().font->isVertical) return;
    std::size_t first = 0;
    for (const ShapingParagraph& paragraph : paragraphs) {
        if (paragraph.end > first) FindLevels(first, paragraph.end, paragraph.isRightToLeft);
        first = std::max(first, paragraph.end);
    }
}

void Shaper::FindLevels(std::size_t first, std::size_t end, bool isRightToLeft) {
    const std::uint32_t* text = text_.characters.data() + first;
    const bool hasOnlyLeftToRight =
        std::all_of(text, text + (end - first), [](char32_t c) { return c < kFirstRightToLeft; });
    if (!isRightToLeft && hasOnlyLeftToRight) return;

    const auto count = static_cast<FriBidiStrIndex>(end - first);
    text_.bidiTypes.resize(end - first);
    text_.bracketTypes.resize(end - first);
    fribidi_get_bidi_types(text, count, text_.bidiTypes.data());
    fribidi_get_bracket_types(text, count, text_.bidiTypes.data(), text_.bracketTypes.data());
    FriBidiParType direction = isRightToLeft ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
    // White space at the end of the line gets the paragraph level.
    if (fribidi_get_par_embedding_levels_ex(text_.bidiTypes.data(), text_.bracketTypes.data(), count,
                                            &direction, text_.levels.data() + first) == 0)
        throw std::bad_alloc();
}

/// Characters common to many scripts take the script of the preceding character; at the start, of the
/// following one.
void Shaper::FindScripts() {
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

const FileFace& Shaper::FaceFor(const ShapingFont& font, char32_t c) {
    if (font.order.empty()) return InstalledFaceFor(*font.face, c);
    for (const FileFace* face : font.order)
        if (HasCharacter(*face, c)) return *face;
    const FileFace& last = *font.order.back();
    return last.IsOfDocument() ? *font.face : InstalledFaceFor(last, c);
}

const FileFace& Shaper::InstalledFaceFor(const FileFace& base, char32_t c) {
    if (HasCharacter(base, c)) return base;
    constexpr char32_t kFirstEmoji = 0x1F000;
    const FileFace* other = nullptr;
    if (rules_.takesColours && c >= kFirstEmoji) other = fallback_.FindColoured(c);
    if (!other) other = fallback_.Find(base, c);
    if (!other && rules_.takesColours) other = fallback_.FindColoured(c);
    return other ? *other : base;
}

/// A mark uses the face of its base character. If that face has no such mark, a face for the mark is used for
/// both, if it has both. A face that has the composition of both has no need of the mark.
void Shaper::FindFaces(std::span<const ShapingPart> parts) {
    text_.faces.resize(text_.characters.size());
    text_.marksBefore.assign(text_.characters.size(), kNoMark);
    std::size_t clusterStart = 0;
    std::uint32_t marks = 0;
    char32_t composed = 0;
    auto part = parts.begin();
    for (std::size_t i = 0; i < text_.characters.size(); ++i) {
        const char32_t c = text_.characters[i];
        while (part->end <= i) ++part;
        const ShapingFont& font = *part->font;
        if (IsInvisible(c)) {
            text_.faces[i] = i > 0 ? text_.faces[i - 1] : font.face;
            text_.marksBefore[i] = marks++;
            continue;
        }
        const bool isMark = IsMark(c);
        if (isMark) text_.marksBefore[i] = marks++;
        if (!isMark) marks = 0;
        if (i == 0 || !isMark) {
            clusterStart = i;
            composed = c;
            text_.faces[i] = &FaceFor(font, c);
            continue;
        }
        text_.faces[i] = text_.faces[i - 1];
        composed = rules_.composes ? Composition(composed, c) : 0;
        const bool hasComposed = composed != 0 && text_.faces[i]->GetGlyph(composed);
        if (!hasComposed && !text_.faces[i]->GetGlyph(c)) TakeMarksFace(clusterStart, i, font);
    }
}

void Shaper::TakeMarksFace(std::size_t clusterStart, std::size_t mark, const ShapingFont& font) {
    const FileFace& other = FaceFor(font, text_.characters[mark]);
    // Clusters are short; of a run of hundreds of marks, only the first determine the face.
    constexpr std::size_t kLongestCluster = 16;
    const std::size_t length = mark - clusterStart;
    if (length > kLongestCluster) return;
    const auto first = text_.characters.begin() + static_cast<std::ptrdiff_t>(clusterStart);
    const bool hasAll = std::all_of(first, first + static_cast<std::ptrdiff_t>(length) + 1,
                                    [&](char32_t one) { return IsInvisible(one) || other.GetGlyph(one); });
    if (hasAll)
        std::fill_n(text_.faces.begin() + static_cast<std::ptrdiff_t>(clusterStart), length + 1, &other);
}

/// Whether a mark starts a new piece because of the number of marks before it: HarfBuzz takes quadratic time
/// in their number.
bool Shaper::IsLongRun(std::size_t i) const {
    const std::uint32_t before = text_.marksBefore[i];
    return before != kNoMark && before > 0 && before % kMostMarks == 0;
}

void Shaper::MakeItems(std::span<const ShapingPart> parts, std::span<const ShapingParagraph> paragraphs) {
    items_.clear();
    std::size_t part = 0, paragraph = 0;
    for (std::size_t i = 0; i < text_.characters.size(); ++i) {
        while (parts[part].end <= i) ++part;
        while (paragraphs[paragraph].end <= i) ++paragraph;
        const bool splits = IsLongRun(i);
        const ShapedItem* const last = items_.empty() ? nullptr : &items_.back();
        if (!last || splits || last->face != text_.faces[i] || last->script != text_.scripts[i] ||
            last->level != text_.levels[i] || last->part != part || last->paragraph != paragraph) {
            ShapedItem& item = items_.emplace_back();
            item.first = i;
            item.face = text_.faces[i];
            item.font = parts[part].font;
            item.isVertical = item.font->isVertical;
            item.script = text_.scripts[i];
            item.level = text_.levels[i];
            item.continues = splits && IsMark(text_.characters[i]);
            item.part = part;
            item.paragraph = paragraph;
        }
        items_.back().end = i + 1;
    }
}

void Shaper::ShapeItem(ShapedItem& item) {
    item.firstGlyph = item.endGlyph = glyphs_.size();
    hb_font_t* const font = item.face->GetHarfBuzzFont();
    if (!font) return;
    item.face->PrepareFor(item.script, DirectionOf(item));
    hb_buffer_clear_contents(buffer_);
    // The letter of continued marks is in the previous piece, so no dotted circle is inserted.
    hb_buffer_set_flags(buffer_,
                        item.continues ? HB_BUFFER_FLAG_DO_NOT_INSERT_DOTTED_CIRCLE : HB_BUFFER_FLAG_DEFAULT);
    // The whole text is passed as context, so that letters join across items.
    hb_buffer_add_codepoints(buffer_, text_.characters.data(), static_cast<int>(text_.characters.size()),
                             static_cast<unsigned int>(item.first), static_cast<int>(item.end - item.first));
    hb_buffer_set_direction(buffer_, DirectionOf(item));
    hb_buffer_set_script(buffer_, item.script);
    hb_buffer_set_language(buffer_, Undetermined());
    const std::span<const hb_feature_t> features = item.font->features;
    const bool isShaped = hb_shape_full(font, buffer_, features.data(),
                                        static_cast<unsigned int>(features.size()), nullptr) != 0;
    if (!isShaped || !hb_buffer_allocation_successful(buffer_)) throw std::bad_alloc();
    CollectGlyphs(item, font);
}

void Shaper::CollectGlyphs(ShapedItem& item, hb_font_t* font) {
    int horizontalScale = 0, verticalScale = 0;
    hb_font_get_scale(font, &horizontalScale, &verticalScale);
    const double em = horizontalScale > 0 ? horizontalScale : 1000.0;
    unsigned int count = 0, positionCount = 0;
    const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer_, &count);
    const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer_, &positionCount);
    count = std::min(count, positionCount);
    for (unsigned int i = 0; i < count; ++i) {
        if ((i == 0 || infos[i].cluster != infos[i - 1].cluster) && !item.Continues(infos[i].cluster))
            ++clusterCount_;
        const double step = item.isVertical ? -positions[i].y_advance : positions[i].x_advance;
        glyphs_.push_back({infos[i].codepoint, infos[i].cluster, positions[i].x_offset / em,
                           positions[i].y_offset / em, step / em});
    }
    item.endGlyph = glyphs_.size();
}

/// Reverses, from the highest level down, every run of items of that level or higher.
void Shaper::OrderVisually() {
    constexpr int kLowestOdd = 1;
    for (auto start = items_.begin(); start != items_.end();) {
        const auto stop = std::find_if(
            start, items_.end(), [&](const ShapedItem& item) { return item.paragraph != start->paragraph; });
        int highest = 0;
        for (auto item = start; item != stop; ++item) highest = std::max<int>(highest, item->level);
        for (int level = highest; level >= kLowestOdd; --level) {
            for (auto first = start; first != stop;) {
                first =
                    std::find_if(first, stop, [&](const ShapedItem& item) { return item.level >= level; });
                const auto end =
                    std::find_if(first, stop, [&](const ShapedItem& item) { return item.level < level; });
                std::reverse(first, end);
                first = end;
            }
        }
        start = stop;
    }
}

std::size_t Shaper::ClusterEnd(const ShapedItem& item, std::size_t i) const {
    const std::uint32_t cluster = glyphs_[i].cluster;
    if (item.IsRightToLeft() && !item.isVertical)
        return i == item.firstGlyph ? item.end : glyphs_[i - 1].cluster;
    std::size_t next = i + 1;
    while (next < item.endGlyph && glyphs_[next].cluster == cluster) ++next;
    return next == item.endGlyph ? item.end : glyphs_[next].cluster;
}
