// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/painted_glyphs.h"

#include <hb-ot.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string_view>
#include <utility>

// Parses version 1 of the table "COLR", which FreeType and HarfBuzz of the supported systems do not expose.

namespace {

// Limits on the paints drawn for one glyph and on their nesting, because paints may be shared and cyclic.
constexpr int kMostPaints = 4096, kGreatestDepth = 48;
constexpr unsigned int kTextColour = 0xFFFF;

/// The table. Reads beyond its end return 0.
class ColourTable {
public:
    explicit ColourTable(std::string_view bytes) : bytes_(bytes) {}

    std::uint32_t Number(std::size_t at, std::size_t width) const {
        std::uint32_t number = 0;
        for (std::size_t i = at; i < at + width; ++i)
            number = number << 8U | (i < bytes_.size() ? static_cast<unsigned char>(bytes_[i]) : 0U);
        return number;
    }
    std::uint32_t Byte(std::size_t at) const { return Number(at, 1); }
    std::uint32_t Word(std::size_t at) const { return Number(at, 2); }
    std::uint32_t Long(std::size_t at) const { return Number(at, 4); }
    double Signed(std::size_t at) const { return static_cast<std::int16_t>(Word(at)); }
    /// A fixed-point number with 14 fractional bits.
    double Share(std::size_t at) const { return Signed(at) / 16384.0; }
    /// A fixed-point number with 16 fractional bits.
    double Fixed(std::size_t at) const { return static_cast<std::int32_t>(Long(at)) / 65536.0; }
    bool Has(std::size_t at) const { return at < bytes_.size(); }
    /// Resolves a 24-bit offset.
    std::size_t Target(std::size_t paint, std::size_t at) const { return paint + Number(paint + at, 3); }

    /// Offset of a glyph's paint; 0 for none.
    std::size_t FindPaint(std::uint32_t glyph) const {
        constexpr std::size_t kRecord = 6;
        const std::size_t list = Long(14);
        if (Word(0) < 1 || list == 0 || !Has(list)) return 0;
        std::size_t first = 0, end = std::min<std::size_t>(Long(list), bytes_.size() / kRecord);
        while (first < end) {
            const std::size_t middle = (first + end) / 2, record = list + 4 + middle * kRecord;
            const std::uint32_t found = Word(record);
            if (found == glyph) return list + Long(record + 2);
            (found < glyph ? first : end) = found < glyph ? middle + 1 : middle;
        }
        return 0;
    }
    /// Offset of a layer's paint; 0 for none.
    std::size_t LayerAt(std::size_t number) const {
        const std::size_t list = Long(18);
        return list != 0 && number < Long(list) ? list + Long(list + 4 + number * 4) : 0;
    }

private:
    std::string_view bytes_;
};

/// Walks the paints of a glyph.
class PaintWalk {
public:
    PaintWalk(const ColourTable& table, hb_face_t* source, ORVGlyphPaintSink& sink)
        : table_(table), source_(source), sink_(sink), unit_(1.0 / std::max(hb_face_get_upem(source), 1U)) {}

    /// @param isSilhouette  whether everything is painted in black
    void Walk(std::size_t paint, const ORVMathAffine2D& map, int depth, bool isSilhouette);

private:
    double Length(std::size_t at) const { return table_.Signed(at) * unit_; }
    ORVMathPoint2D Point(std::size_t at) const { return {Length(at), Length(at + 2)}; }
    ORVGlyphPaintColour ColourAt(std::size_t at) const;
    /// @param centre  offset of the centre; 0 for the origin
    ORVMathAffine2D About(const ORVMathAffine2D& map, std::size_t centre) const {
        if (centre == 0) return map;
        const ORVMathPoint2D c = Point(centre);
        return ORVMathAffine2D::Translation(c.x, c.y) * map * ORVMathAffine2D::Translation(-c.x, -c.y);
    }
    bool ReadStops(std::size_t line, bool isVaried, ORVGlyphPaint& paint) const;
    void Fill(ORVGlyphPaint paint, const ORVMathAffine2D& map, bool isSilhouette);
    bool ReadLinear(std::size_t at, ORVGlyphPaint& paint) const;
    void FillGradient(std::size_t at, std::uint32_t format, const ORVMathAffine2D& map, bool isSilhouette);
    ORVMathAffine2D ChangeOf(std::size_t at, std::uint32_t format) const;
    void Compose(std::size_t at, const ORVMathAffine2D& map, int depth, bool isSilhouette);
    template <class Content, class Mask>
    void Masked(bool isInverse, Content content, Mask mask);

    const ColourTable& table_;
    hb_face_t* source_;
    ORVGlyphPaintSink& sink_;
    const double unit_;
    int count_ = 0;
};

/// A palette index and an opacity.
ORVGlyphPaintColour PaintWalk::ColourAt(std::size_t at) const {
    ORVGlyphPaintColour colour;
    colour.opacity = std::clamp(table_.Share(at + 2), 0.0, 1.0);
    const std::uint32_t index = table_.Word(at);
    if (index == kTextColour) return colour;
    hb_color_t value = 0;
    unsigned int one = 1;
    hb_ot_color_palette_get_colors(source_, 0, index, &one, &value);
    if (one != 1) return colour;
    colour.isTextColour = false;
    colour.red = hb_color_get_red(value);
    colour.green = hb_color_get_green(value);
    colour.blue = static_cast<std::uint8_t>(hb_color_get_blue(value));
    colour.opacity *= hb_color_get_alpha(value) / 255.0;
    return colour;
}

bool PaintWalk::ReadStops(std::size_t line, bool isVaried, ORVGlyphPaint& paint) const {
    constexpr std::size_t kMostStops = 1024, kHeader = 3;
    const std::size_t width = isVaried ? 10 : 6;
    const std::uint32_t spread = table_.Byte(line);
    if (spread == 1) paint.spread = ORVGlyphPaint::Spread::kRepeat;
    if (spread == 2) paint.spread = ORVGlyphPaint::Spread::kReflect;
    const std::size_t count = std::min<std::size_t>(table_.Word(line + 1), kMostStops);
    for (std::size_t i = 0; i < count && table_.Has(line + kHeader + i * width); ++i) {
        const std::size_t stop = line + kHeader + i * width;
        paint.stops.push_back({table_.Share(stop), ColourAt(stop + 2)});
    }
    std::stable_sort(paint.stops.begin(), paint.stops.end(),
                     [](const auto& a, const auto& b) { return a.offset < b.offset; });
    return !paint.stops.empty();
}

void PaintWalk::Fill(ORVGlyphPaint paint, const ORVMathAffine2D& map, bool isSilhouette) {
    paint.toGlyph = map;
    if (isSilhouette) {
        const auto blacken = [](ORVGlyphPaintColour& colour) {
            colour.isTextColour = false;
            colour.red = colour.green = colour.blue = 0;
        };
        blacken(paint.colour);
        for (ORVGlyphPaint::Stop& stop : paint.stops) blacken(stop.colour);
    }
    sink_.Fill(paint);
}

/// The colour line is the projection of the second point onto the perpendicular of the line from the first to
/// the third.
/// @return false when nothing is visible
bool PaintWalk::ReadLinear(std::size_t at, ORVGlyphPaint& paint) const {
    const ORVMathPoint2D start = Point(at), end = Point(at + 4), turn = Point(at + 8);
    const ORVMathPoint2D across{turn.x - start.x, turn.y - start.y}, along{end.x - start.x, end.y - start.y};
    const double square = across.x * across.x + across.y * across.y;
    if (square == 0.0 || along.x * across.y == along.y * across.x) return false;
    const double share = (along.x * across.x + along.y * across.y) / square;
    paint.start = start;
    paint.end = {end.x - share * across.x, end.y - share * across.y};
    return true;
}

void PaintWalk::FillGradient(std::size_t at, std::uint32_t format, const ORVMathAffine2D& map,
                             bool isSilhouette) {
    constexpr std::size_t kPlaces = 4;
    constexpr double kHalfTurn = 180.0;
    ORVGlyphPaint paint;
    if (!ReadStops(table_.Target(at, 1), format % 2 == 1, paint)) return;
    const std::size_t places = at + kPlaces;
    if (format <= 5) {
        paint.kind = ORVGlyphPaint::Kind::kLinear;
        if (!ReadLinear(places, paint)) return;
    } else if (format <= 7) {
        paint.kind = ORVGlyphPaint::Kind::kRadial;
        paint.start = Point(places);
        paint.startRadius = table_.Word(places + 4) * unit_;
        paint.end = Point(places + 6);
        paint.endRadius = table_.Word(places + 10) * unit_;
    } else {
        paint.kind = ORVGlyphPaint::Kind::kSweep;
        paint.start = Point(places);
        // Stored with an offset of -1, so that a full turn can be represented.
        paint.startAngle = (table_.Share(places + 4) + 1.0) * kHalfTurn;
        paint.endAngle = (table_.Share(places + 6) + 1.0) * kHalfTurn;
    }
    Fill(std::move(paint), map, isSilhouette);
}

template <class Content, class Mask>
void PaintWalk::Masked(bool isInverse, Content content, Mask mask) {
    if (sink_.BeginMaskedLayer(isInverse)) {
        mask(isInverse);
        sink_.EndMask();
    }
    content();
    sink_.EndLayer();
}

void PaintWalk::Compose(std::size_t at, const ORVMathAffine2D& map, int depth, bool isSilhouette) {
    // Numbered as in the format; values from 13 on are blend modes.
    enum Mode : std::uint32_t {
        kClear,
        kSource,
        kBackdrop,
        kSourceOver,
        kBackdropOver,
        kSourceIn,
        kBackdropIn,
        kSourceOut,
        kBackdropOut,
        kSourceAtop,
        kBackdropAtop,
        kXor,
        kPlus,
        kLastMode = 27,
    };
    const std::size_t sourcePaint = table_.Target(at, 1), backdropPaint = table_.Target(at, 5);
    const auto source = [&] { Walk(sourcePaint, map, depth, isSilhouette); };
    const auto backdrop = [&] { Walk(backdropPaint, map, depth, isSilhouette); };
    const auto sourceMask = [&](bool isBlack) { Walk(sourcePaint, map, depth, isBlack); };
    const auto backdropMask = [&](bool isBlack) { Walk(backdropPaint, map, depth, isBlack); };
    const std::uint32_t mode = table_.Byte(at + 4);
    switch (mode) {
        case kClear: return;
        case kSource: return source();
        case kBackdrop: return backdrop();
        case kBackdropOver: source(); return backdrop();
        case kSourceIn: return Masked(false, source, backdropMask);
        case kBackdropIn: return Masked(false, backdrop, sourceMask);
        case kSourceOut: return Masked(true, source, backdropMask);
        case kBackdropOut: return Masked(true, backdrop, sourceMask);
        case kSourceAtop: backdrop(); return Masked(false, source, backdropMask);
        case kBackdropAtop: source(); return Masked(false, backdrop, sourceMask);
        case kXor: Masked(true, source, backdropMask); return Masked(true, backdrop, sourceMask);
        default: break;
    }
    if (mode <= kPlus || mode > kLastMode) {  // kPlus is not supported and is drawn as source-over
        backdrop();
        return source();
    }
    sink_.BeginLayer(ORVGlyphBlend::kNormal);
    backdrop();
    sink_.BeginLayer(static_cast<ORVGlyphBlend>(mode - kPlus));
    source();
    sink_.EndLayer();
    sink_.EndLayer();
}

/// The transformation of a transforming paint. Odd formats are the variable versions of the even ones.
ORVMathAffine2D PaintWalk::ChangeOf(std::size_t at, std::uint32_t format) const {
    constexpr std::size_t kNumbers = 4;
    const std::size_t n = at + kNumbers;
    const auto turn = [&](std::size_t place) { return table_.Share(place) * std::numbers::pi; };
    switch (format - format % 2) {
        case 12: {
            const std::size_t a = table_.Target(at, kNumbers);
            return {table_.Fixed(a),      table_.Fixed(a + 8),          table_.Fixed(a + 4),
                    table_.Fixed(a + 12), table_.Fixed(a + 16) * unit_, table_.Fixed(a + 20) * unit_};
        }
        case 14: return ORVMathAffine2D::Translation(Length(n), Length(n + 2));
        case 16:
        case 18:
            return About(ORVMathAffine2D::Scaling(table_.Share(n), table_.Share(n + 2)),
                         format >= 18 ? n + 4 : 0);
        case 20:
        case 22:
            return About(ORVMathAffine2D::Scaling(table_.Share(n), table_.Share(n)),
                         format >= 22 ? n + 2 : 0);
        case 24:
        case 26: {
            const double c = std::cos(turn(n)), s = std::sin(turn(n));
            return About({c, -s, s, c, 0.0, 0.0}, format >= 26 ? n + 2 : 0);
        }
        case 28:
        case 30:
            return About({1.0, -std::tan(turn(n)), std::tan(turn(n + 2)), 1.0, 0.0, 0.0},
                         format >= 30 ? n + 4 : 0);
        default: return {};
    }
}

void PaintWalk::Walk(std::size_t at, const ORVMathAffine2D& map, int depth, bool isSilhouette) {
    constexpr std::uint32_t kLayers = 1, kLastSolid = 3, kLastGradient = 9, kGlyph = 10, kColouredGlyph = 11,
                            kLastChange = 31, kComposite = 32;
    if (depth > kGreatestDepth || ++count_ > kMostPaints || sink_.IsStopped() || at == 0 || !table_.Has(at))
        return;
    const std::uint32_t format = table_.Byte(at);
    if (format == kLayers) {
        const std::size_t count = table_.Byte(at + 1), first = table_.Long(at + 2);
        for (std::size_t i = 0; i < count; ++i) Walk(table_.LayerAt(first + i), map, depth + 1, isSilhouette);
    } else if (format > kLayers && format <= kLastSolid) {
        ORVGlyphPaint solid;
        solid.colour = ColourAt(at + 1);
        Fill(std::move(solid), map, isSilhouette);
    } else if (format > kLastSolid && format <= kLastGradient) {
        FillGradient(at, format, map, isSilhouette);
    } else if (format == kGlyph) {
        sink_.BeginOutline(table_.Word(at + 4), map);
        Walk(table_.Target(at, 1), map, depth + 1, isSilhouette);
        sink_.EndOutline();
    } else if (format == kColouredGlyph) {
        Walk(table_.FindPaint(table_.Word(at + 1)), map, depth + 1, isSilhouette);
    } else if (format > kColouredGlyph && format <= kLastChange) {
        Walk(table_.Target(at, 1), map * ChangeOf(at, format), depth + 1, isSilhouette);
    } else if (format == kComposite) {
        Compose(at, map, depth + 1, isSilhouette);
    }
}

}  // namespace

bool PaintGlyph(const FileFace& face, std::uint32_t glyph, ORVGlyphPaintSink* sink) {
    hb_font_t* const font = face.GetHarfBuzzFont();
    if (!font) return false;
    const ORVFontBytes bytes = face.GetTable("COLR");
    const ColourTable table(bytes.bytes);
    const std::size_t paint = table.FindPaint(glyph);
    if (paint == 0) return false;
    if (sink) PaintWalk(table, hb_font_get_face(font), *sink).Walk(paint, {}, 0, false);
    return true;
}
