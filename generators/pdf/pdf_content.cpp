#include "generators/pdf/pdf_content.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>

#include "generators/common/glyph_outlines.h"
#include "generators/common/map_measures.h"
#include "generators/common/number_text.h"
#include "generators/common/path_range.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_fonts.h"
#include "generators/pdf/pdf_images.h"
#include "generators/pdf/pdf_syntax.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;
// What lies farther out (user units) is cut off: no page is larger, and readers hold coordinates in few bits.
constexpr double kLimit = 40'000.0;
// Glyphs of other sizes (user units an em, on the page) cannot be seen, or are larger than any page.
constexpr double kSmallestGlyph = 1e-3;
constexpr double kLargestGlyph = 1e6;
// Dashes of a shorter period (user units) look like a solid line.
constexpr double kShortestDashPeriod = 0.02;
// Thinner lines (user units) than the dots of any device.
constexpr double kHairline = 0.01;
// A page's content comes in streams of this size, each of which is compressed on its own.
constexpr std::size_t kPieceSize = std::size_t{256} << 10U;

std::uint64_t ToKey(const ORVPrintColour& colour) {
    return std::uint64_t{colour.red} << 16U | std::uint64_t{colour.green} << 8U | colour.blue;
}

/// A component of a colour as a fraction of three digits, which tell 256 steps apart, and a blank.
struct ColourPart {
    std::array<char, 5> text{};
    std::size_t length = 0;
};

constexpr std::array<ColourPart, 256> MakeColourParts() {
    std::array<ColourPart, 256> parts{};
    for (unsigned int i = 0; i < parts.size(); ++i) {
        ColourPart& part = parts[i];
        unsigned int rest = (i * 1000 + 127) / 255;
        if (rest == 0 || rest == 1000) {
            part.text[part.length++] = rest == 0 ? '0' : '1';
        } else {
            part.text[part.length++] = '.';
            for (; rest != 0; rest = rest % 100 * 10)
                part.text[part.length++] = static_cast<char>('0' + rest / 100);
        }
        part.text[part.length++] = ' ';
    }
    return parts;
}
constexpr std::array<ColourPart, 256> kColourParts = MakeColourParts();

/// Coordinates are finer than any printer, and no finer than a page's size asks for.
int PlacesFor(double longestSide) {
    constexpr double kLarge = 400.0, kSmall = 40.0;
    return longestSide >= kLarge ? 3 : longestSide >= kSmall ? 4 : 5;
}

int ToPdf(ORVPrintStroke::Cap cap) {
    return cap == ORVPrintStroke::Cap::kRound ? 1 : cap == ORVPrintStroke::Cap::kSquare ? 2 : 0;
}

int ToPdf(ORVPrintStroke::Join join) {
    return join == ORVPrintStroke::Join::kRound ? 1 : join == ORVPrintStroke::Join::kBevel ? 2 : 0;
}

bool IsSame(const ORVMathAffine2D& a, const ORVMathAffine2D& b) {
    return a.m11 == b.m11 && a.m12 == b.m12 && a.m21 == b.m21 && a.m22 == b.m22 && a.dx == b.dx &&
           a.dy == b.dy;
}

std::string OpacityName(int fill, int stroke) {
    return "/A" + std::to_string(fill) + "_" + std::to_string(stroke);
}

/// What each glyph of a cluster says by itself, for readers that do not look at what the cluster says: a
/// character each where there are as many, in the order in which they are read; else the first says all.
class ClusterTexts {
public:
    ClusterTexts(std::string_view text, std::size_t glyphs, bool isRightToLeft)
        : rest_(text),
          isEach_(glyphs > 1 && CountCharacters(text) == glyphs),
          isRightToLeft_(isRightToLeft) {}

    /// The text of the next glyph from the left; may be empty.
    std::string_view TakeNext() {
        // A glyph that says nothing comes out as a replacement character: this one is not seen, and keeps
        // what stands on both sides together.
        constexpr std::string_view kGraphemeJoiner = "\u034F";
        if (!isEach_) return std::exchange(rest_, rest_.empty() ? rest_ : kGraphemeJoiner);
        std::size_t at = isRightToLeft_ ? rest_.size() - 1 : 1;
        while (at > 0 && at < rest_.size() && IsWithin(rest_[at])) isRightToLeft_ ? --at : ++at;
        const std::string_view front = rest_.substr(0, at), back = rest_.substr(at);
        rest_ = isRightToLeft_ ? front : back;
        return isRightToLeft_ ? back : front;
    }

private:
    /// True for the bytes of a character behind its first.
    static bool IsWithin(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }
    static std::size_t CountCharacters(std::string_view text) {
        return static_cast<std::size_t>(
            std::count_if(text.begin(), text.end(), [](char c) { return !IsWithin(c); }));
    }

    std::string_view rest_;
    bool isEach_, isRightToLeft_;
};

/// What both boxes cover; empty when they do not touch.
ORVMathBox2D Intersection(const ORVMathBox2D& a, const ORVMathBox2D& b) {
    const ORVMathBox2D common{std::max(a.xMin, b.xMin), std::min(a.xMax, b.xMax), std::max(a.yMin, b.yMin),
                              std::min(a.yMax, b.yMax)};
    return common.xMin <= common.xMax && common.yMin <= common.yMax ? common : ORVMathBox2D();
}

void Unite(ORVMathBox2D& box, const ORVMathBox2D& other) {
    box.xMin = std::min(box.xMin, other.xMin);
    box.xMax = std::max(box.xMax, other.xMax);
    box.yMin = std::min(box.yMin, other.yMin);
    box.yMax = std::max(box.yMax, other.yMax);
}

/// Maps a rectangle's outline to one along the axes. @return false when the path is none, or its map turns it
bool IsRectangle(const ORVPrintPath& path, const ORVMathAffine2D& map, ORVMathPoint2D& corner,
                 ORVMathPoint2D& opposite) {
    using Verb = ORVPrintPath::Verb;
    constexpr std::array kVerbs{Verb::kMove, Verb::kLine, Verb::kLine, Verb::kLine, Verb::kClose};
    if (path.points.size() != 4 ||
        !std::equal(path.verbs.begin(), path.verbs.end(), kVerbs.begin(), kVerbs.end()))
        return false;
    const ORVMathPoint2D a = map(path.points[0]), b = map(path.points[1]), c = map(path.points[2]),
                         d = map(path.points[3]);
    corner = a;
    opposite = c;
    return (a.y == b.y && b.x == c.x && c.y == d.y && d.x == a.x) ||
           (a.x == b.x && b.y == c.y && c.x == d.x && d.y == a.y);
}

}  // namespace

PdfContent::PdfContent(PdfDocumentObjects& document, double width, double height)
    : document_(document),
      isForm_(false),
      toDefault_{kPointsPerUserUnit, 0.0, 0.0, -kPointsPerUserUnit, 0.0, height * kPointsPerUserUnit},
      area_{0.0, width, 0.0, height},
      places_(PlacesFor(std::max(width, height))) {
    Concatenate(toDefault_);
}

PdfContent::PdfContent(PdfDocumentObjects& document) : document_(document), isForm_(true), places_(4) {
    // A form begins with what is in force where it is shown.
    state_.fill = state_.stroke = kUnknownColour;
    state_.lineWidth = state_.miterLimit = -1.0;
}

void PdfContent::PutNumber(double number) {
    AppendDecimal(content_, number, places_);
    content_ += ' ';
}

void PdfContent::PutPoint(const ORVMathPoint2D& p) {
    PutNumber(p.x);
    PutNumber(p.y);
}

void PdfContent::PutPath(const ORVPrintPath& path, const ORVMathAffine2D& map) {
    EndText();
    // Operators are put together here, so that the content grows once for each.
    std::array<char, 6 * (kNumberRoom + 1) + 4> room;
    const auto put = [this, &room](char* end, std::string_view name) {
        content_.append(room.data(), std::copy(name.begin(), name.end(), end));
    };
    const auto write = [this](char* out, const ORVMathPoint2D& point) {
        out = WriteDecimal(out, point.x, places_);
        *out++ = ' ';
        out = WriteDecimal(out, point.y, places_);
        *out++ = ' ';
        return out;
    };
    ORVMathPoint2D corner, opposite;
    if (IsRectangle(path, map, corner, opposite))
        return put(write(write(room.data(), corner), {opposite.x - corner.x, opposite.y - corner.y}), "re\n");

    auto p = path.points.begin();
    for (const ORVPrintPath::Verb verb : path.verbs) {
        switch (verb) {
            case ORVPrintPath::Verb::kMove: put(write(room.data(), map(*p++)), "m\n"); break;
            case ORVPrintPath::Verb::kLine: put(write(room.data(), map(*p++)), "l\n"); break;
            case ORVPrintPath::Verb::kCubic: {
                char* end = room.data();
                for (int i = 0; i < 3; ++i) end = write(end, map(*p++));
                put(end, "c\n");
                break;
            }
            case ORVPrintPath::Verb::kClose: put(room.data(), "h\n"); break;
        }
        Flush();
    }
}

void PdfContent::PutName(char prefix, unsigned int number) {
    content_ += '/';
    content_ += prefix;
    AppendDecimal(content_, number, 0);
    content_ += ' ';
}

void PdfContent::PutColour(std::uint64_t colour, std::string_view gray, std::string_view rgb) {
    const std::array<std::uint8_t, 3> parts{static_cast<std::uint8_t>(colour >> 16U & 255U),
                                            static_cast<std::uint8_t>(colour >> 8U & 255U),
                                            static_cast<std::uint8_t>(colour & 255U)};
    const bool isGray = parts[0] == parts[1] && parts[0] == parts[2];
    std::array<char, 32> room;
    char* end = room.data();
    for (std::size_t i = 0; i < (isGray ? 1U : 3U); ++i) {
        const ColourPart& part = kColourParts[parts[i]];
        end = std::copy_n(part.text.begin(), part.length, end);
    }
    const std::string_view name = isGray ? gray : rgb;
    content_.append(room.data(), std::copy(name.begin(), name.end(), end));
    isColoured_ |= !isGray;
}

void PdfContent::Flush() {
    if (isForm_ || content_.size() < kPieceSize) return;
    pieces_.push_back(document_.file.Reserve());
    document_.file.WriteStream(pieces_.back(), "", std::move(content_), PdfFile::Packing::kContent);
    content_ = std::string();
    content_.reserve(kPieceSize + 4096);
}

void PdfContent::Save() {
    EndText();
    saved_.push_back(state_);
    Put("q\n");
}

void PdfContent::Concatenate(const ORVMathAffine2D& map) {
    EndText();
    AppendPdfMap(content_, map);
    Put("cm\n");
}

void PdfContent::Restore() {
    EndText();
    state_ = std::move(saved_.back());
    saved_.pop_back();
    Put("Q\n");
}

void PdfContent::BeginText() {
    if (!isTextOpen_) Put("BT\n");
    isTextOpen_ = true;
}

void PdfContent::EndText() {
    if (isTextOpen_) Put("ET\n");
    isTextOpen_ = false;
}

void PdfContent::BeginClip(const ORVMathBox2D& box) {
    Save();
    ORVMathBox2D cut{0.0, 0.0, 0.0, 0.0};
    if (!box.IsEmpty()) {
        const auto limit = [](double coordinate) { return std::clamp(coordinate, -kLimit, kLimit); };
        cut = {limit(box.xMin), limit(box.xMax), limit(box.yMin), limit(box.yMax)};
    }
    clips_.push_back(clips_.empty() ? cut : Intersection(clips_.back(), cut));
    PutPoint({cut.xMin, cut.yMin});
    PutPoint({cut.xMax - cut.xMin, cut.yMax - cut.yMin});
    Put("re W n\n");
}

bool PdfContent::EndClip() {
    if (clips_.empty()) return false;
    clips_.pop_back();
    Restore();
    return true;
}

unsigned int PdfContent::FindPattern(const ORVPrintFill& fill) {
    const ORVMathAffine2D& map = fill.patternToPage;
    const auto found = std::find_if(patterns_.begin(), patterns_.end(), [&](const Pattern& pattern) {
        return pattern.image == fill.pattern && IsSame(pattern.map, map);
    });
    if (found != patterns_.end()) return found->object;

    const PdfImage& image = document_.images.Find(*fill.pattern, false, document_.file);
    isColoured_ |= !image.isGray;
    isTransparent_ |= image.hasAlpha;
    const unsigned int object = document_.file.Reserve();
    const std::string width = std::to_string(fill.pattern->GetWidth()),
                      height = std::to_string(fill.pattern->GetHeight());
    // A pattern's coordinates are those before any map of the content it is used in.
    std::string entries = "/Type/Pattern/PatternType 1/PaintType 1/TilingType 1/BBox[0 0 " + width + " " +
                          height + "]/XStep " + width + "/YStep " + height + "/Resources<</XObject<</I " +
                          PdfReference(image.object) + ">>>>/Matrix[";
    AppendPdfMap(entries, toDefault_ * map);
    std::string content = width + " 0 0 -" + height + " 0 " + height + " cm ";
    if (image.isTurned) {
        AppendPdfMap(content, image.turn);
        content += "cm ";
    }
    document_.file.WriteStream(object, entries + "]", content + "/I Do\n", PdfFile::Packing::kStored);
    patterns_.push_back({fill.pattern, map, object});
    return object;
}

void PdfContent::SetOpacity(int fill, int stroke) {
    if (state_.fillOpacity == fill && state_.strokeOpacity == stroke) return;
    state_.fillOpacity = fill;
    state_.strokeOpacity = stroke;
    opacities_.emplace(fill, stroke);
    isTransparent_ |= fill != 255 || stroke != 255;
    Put(OpacityName(fill, stroke) + " gs\n");
}

void PdfContent::SetFill(const ORVPrintFill& fill) {
    const std::uint64_t colour = fill.pattern ? kPatternColour + FindPattern(fill) : ToKey(fill.colour);
    if (state_.fill != colour) {
        state_.fill = colour;
        if (fill.pattern) {
            Put("/Pattern cs ");
            PutName('P', static_cast<unsigned int>(colour - kPatternColour));
            Put("scn\n");
        } else {
            PutColour(colour, "g\n", "rg\n");
        }
    }
    SetOpacity(fill.colour.opacity, state_.strokeOpacity);
}

void PdfContent::SetStrokeColour(const ORVPrintColour& colour) {
    if (const std::uint64_t key = ToKey(colour); state_.stroke != key) {
        state_.stroke = key;
        PutColour(key, "G\n", "RG\n");
    }
    SetOpacity(state_.fillOpacity, colour.opacity);
}

void PdfContent::SetLine(double width, int cap, int join, double miterLimit) {
    if (state_.lineWidth != width) {
        PutNumber(width);
        Put("w\n");
        state_.lineWidth = width;
    }
    if (state_.cap != cap) {
        AppendDecimal(content_, cap, 0);
        Put(" J\n");
        state_.cap = cap;
    }
    if (state_.join != join) {
        AppendDecimal(content_, join, 0);
        Put(" j\n");
        state_.join = join;
    }
    if (join == 0 && state_.miterLimit != miterLimit) {
        PutNumber(std::clamp(miterLimit, 1.0, kLimit));
        Put("M\n");
        state_.miterLimit = miterLimit;
    }
}

void PdfContent::SetDashes(const ORVPrintStroke& stroke, double scale) {
    const double period = std::accumulate(stroke.dashes.begin(), stroke.dashes.end(), 0.0) * scale;
    const std::span<const double> dashes =
        period > kShortestDashPeriod ? stroke.dashes : std::span<const double>();
    const auto onPage = [scale](double dash) { return std::min(dash * scale, 10.0 * kLimit); };
    if (std::equal(dashes.begin(), dashes.end(), state_.dashes.begin(), state_.dashes.end(),
                   [&](double dash, double set) { return onPage(dash) == set; }))
        return;
    state_.dashes.clear();
    Put("[");
    for (const double dash : dashes) {
        state_.dashes.push_back(onPage(dash));
        PutNumber(state_.dashes.back());
    }
    Put("]0 d\n");
}

void PdfContent::SetStroke(const ORVPrintStroke& stroke, double scale) {
    SetStrokeColour(stroke.colour);
    double width = std::min(stroke.width * scale, kLimit);
    // The format's line of width 0 is the thinnest that the device has.
    if (!(width >= kHairline)) width = 0.0;
    SetLine(width, ToPdf(stroke.cap), ToPdf(stroke.join), stroke.miterLimit);
    SetDashes(stroke, scale);
}

void PdfContent::SetTextMode(int mode) {
    if (state_.textMode == mode) return;
    state_.textMode = mode;
    AppendDecimal(content_, mode, 0);
    Put(" Tr\n");
}

void PdfContent::DrawShape(const ORVPrintShape& shape) {
    if (!IsDrawable(shape.toPage)) return;
    const bool isSimple = !shape.stroke || KeepsAngles(shape.toPage);
    const double scale = Enlargement(shape.toPage);
    if (IsMeasured()) {
        const double margin = shape.stroke ? 0.5 * std::min(shape.stroke->width * scale, kLimit) : 0.0;
        TouchPath(shape.path, shape.toPage, margin);
        if (shape.stroke && isForm_)
            paintMargin_ = std::max(paintMargin_, margin * std::clamp(shape.stroke->miterLimit, 2.0, 100.0));
    }

    const ORVPrintPath* fillPath =
        shape.fill ? &FitPathToRange(shape.path, shape.toPage, kLimit, PathUse::kFill, fitted_) : nullptr;
    // One operator paints both, but where they overlap an opacity of the stroke would show the fill's
    // absence.
    if (fillPath == &shape.path && shape.stroke && isSimple && shape.stroke->colour.opacity == 255) {
        SetFill(*shape.fill);
        SetStroke(*shape.stroke, scale);
        PutPath(shape.path, shape.toPage);
        Put(shape.fill->evenOdd ? "B*\n" : "B\n");
        return Flush();
    }
    if (fillPath) {
        SetFill(*shape.fill);
        PutPath(*fillPath, shape.toPage);
        Put(fillPath->IsEmpty() ? "" : shape.fill->evenOdd ? "f*\n" : "f\n");
    }
    if (shape.stroke && !IsFlat(shape.toPage)) {
        const ORVPrintPath& path =
            FitPathToRange(shape.path, shape.toPage, kLimit, PathUse::kStroke, fitted_);
        if (path.IsEmpty()) return;
        if (isSimple) {
            SetStroke(*shape.stroke, scale);
            PutPath(path, shape.toPage);
            Put("S\n");
        } else {
            // The pen goes through the map. The path's own lengths are brought near those on the page, so
            // that their digits suffice.
            Save();
            Concatenate(shape.toPage * ORVMathAffine2D::Scaling(1.0 / scale, 1.0 / scale));
            SetStroke(*shape.stroke, scale);
            PutPath(path, ORVMathAffine2D::Scaling(scale, scale));
            Put("S\n");
            Restore();
        }
    }
    Flush();
}

void PdfContent::DrawText(const ORVPrintText& text) {
    if (!IsDrawable(text.toPage) || IsFlat(text.toPage)) return;
    if (IsMeasured()) {
        const double advance = text.layout.advance, half = 0.5 * (text.layout.ascent + text.layout.descent);
        const bool isVertical = !text.layout.runs.empty() && text.layout.runs.front().vertical;
        TouchBox(isVertical ? ORVMathBox2D{-half, half, -advance, 0.0}
                            : ORVMathBox2D{0.0, advance, -text.layout.descent, text.layout.ascent},
                 text.toPage);
        // Glyphs may reach beyond the line's box, and lines around them do.
        for (const ORVGlyphRun& run : text.layout.runs)
            paintMargin_ =
                std::max(paintMargin_, std::min(2.0 * run.size * Enlargement(text.toPage), kLimit));
    }
    if (text.clip) {
        Save();
        PutPath(FitPathToRange(*text.clip, {}, kLimit, PathUse::kFill, fitted_), {});
        Put("W n\n");
    }
    for (const ORVGlyphRun& run : text.layout.runs) {
        const double size = run.size * Enlargement(text.toPage);
        const bool isWithin = std::all_of(run.glyphs.begin(), run.glyphs.end(), [&](const ORVGlyph& glyph) {
            const ORVMathPoint2D p = text.toPage({glyph.x, glyph.y});
            return std::fabs(p.x) < kLimit && std::fabs(p.y) < kLimit;
        });
        if (isWithin && size > kSmallestGlyph && size < kLargestGlyph && !run.glyphs.empty())
            DrawRun(text, run);
    }
    if (text.clip) Restore();
    Flush();
}

void PdfContent::StrokeOutlines(const ORVPrintText& text, const ORVGlyphRun& run,
                                const ORVPrintStroke& stroke) {
    ORVCollectOutlines(run, outlines_);
    if (outlines_.IsEmpty()) return;
    // DrawShape counts boxes by itself; the text has been counted.
    std::vector<ORVMathBox2D> boxes;
    boxes.swap(boxes_);
    DrawShape({outlines_, text.toPage, nullptr, &stroke});
    boxes_.swap(boxes);
}

void PdfContent::DrawRun(const ORVPrintText& text, const ORVGlyphRun& run) {
    constexpr int kFillMode = 0, kStrokeMode = 1, kBothMode = 2;
    const bool isDrawnFont =
        document_.fonts.Find(*run.face, document_.file).GetKind() == PdfFont::Kind::kDrawn;

    // A family without bold is thickened by a line of the fill's own colour.
    ORVPrintStroke thickening;
    thickening.width = ORVFontFace::kSyntheticBoldStroke * run.size;
    thickening.join = ORVPrintStroke::Join::kRound;
    const bool isThickened = run.syntheticBold && text.fill && !text.fill->pattern;
    if (isThickened) thickening.colour = text.fill->colour;

    // Which lines the text operators can draw: fonts that are drawings have none, a pen needs a map that
    // keeps angles, and an opacity of its own must show the fill below.
    const ORVPrintStroke* stroke = text.stroke ? text.stroke : isThickened ? &thickening : nullptr;
    const bool byOperator = stroke && !isDrawnFont && KeepsAngles(text.toPage) &&
                            (!text.fill || stroke == &thickening || stroke->colour.opacity == 255);

    if (text.fill) SetFill(*text.fill);
    if (byOperator) SetStroke(*stroke, Enlargement(text.toPage));
    if (text.fill || byOperator) {
        BeginText();
        SetTextMode(!byOperator ? kFillMode : text.fill ? kBothMode : kStrokeMode);
        ShowGlyphs(text, run, text.toPage);
    }
    if (stroke && !byOperator) StrokeOutlines(text, run, *stroke);
    // Both kinds of line at once: the thickening went unseen so far.
    if (isThickened && text.stroke) StrokeOutlines(text, run, thickening);
}

void PdfContent::ShowGlyphs(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& map) {
    // Sizes stand in the matrix as well as in the font's size; the latter keeps the size on the page
    // readable.
    const double size = run.size * Enlargement(map);
    const double unit = run.size / size;
    const ORVMathAffine2D toPage = map * ORVMathAffine2D::Scaling(run.expansion * unit, unit);

    PdfFont* font = nullptr;
    bool isArray = false, isStringOpen = false;  // within what is shown
    ORVMathPoint2D pen;                          // where the next glyph would go by itself, in layout space
    shown_.clear();
    const auto end = [&] {
        if (isStringOpen) shown_ += ')';
        if (isArray) {
            Put("[");
            Put(shown_);
            Put("]TJ\n");
        } else if (!shown_.empty()) {
            Put(shown_);
            Put("Tj\n");
        }
        shown_.clear();
        isArray = isStringOpen = false;
    };

    // Thousandths of an em that the pen may be off before it is moved.
    constexpr double kTolerance = 0.5;
    const double em = run.size * run.expansion;
    PdfFont* latest = &document_.fonts.Find(*run.face, document_.file);
    const std::vector<ORVGlyph>& glyphs = run.glyphs;
    for (std::size_t first = 0; first < glyphs.size();) {
        // A cluster is a glyph and those after it that have no text of their own.
        std::size_t last = first + 1;
        while (last < glyphs.size() && glyphs[last].textLength == 0) ++last;
        std::string_view cluster;
        if (glyphs[first].textOffset <= text.text.size())
            cluster = text.text.substr(glyphs[first].textOffset, glyphs[first].textLength);
        const bool isMany = last - first > 1 && !cluster.empty();
        if (isMany) {
            end();
            Put("/Span<</ActualText");
            AppendPdfText(content_, cluster);
            Put(">>BDC\n");
        }
        ClusterTexts texts(cluster, last - first, run.rightToLeft);
        for (std::size_t i = first; i < last; ++i) {
            const ORVGlyph& glyph = glyphs[i];
            const std::string_view ownText = texts.TakeNext();
            unsigned int code = latest->FindCode(glyph.index, ownText);
            if (code == 0) {
                latest = &document_.fonts.AddFont(*run.face, document_.file);
                code = latest->FindCode(glyph.index, ownText);
            }
            const bool isNewLine = !font || glyph.y != pen.y;
            if (latest != font || isNewLine) end();
            if (latest != font) {
                font = latest;
                fonts_.insert(font->GetObject());
                if (state_.font != font || state_.fontSize != size) {
                    PutName('F', font->GetObject());
                    AppendDecimal(content_, size, 5);
                    Put(" Tf\n");
                    state_.font = font;
                    state_.fontSize = size;
                }
            }
            if (isNewLine || shown_.empty()) {
                const ORVMathPoint2D at = map({glyph.x, glyph.y});
                for (const double factor : {toPage.m11, toPage.m21, toPage.m12, toPage.m22}) {
                    AppendSignificant(content_, factor, kPdfFactorDigits);
                    content_ += ' ';
                }
                PutPoint(at);
                Put("Tm\n");
                pen = {glyph.x, glyph.y};
            }
            // How far the pen is; rounded as written, so that errors do not add up.
            const double back = std::round((pen.x - glyph.x) / em * 1e4) / 10.0;
            if (std::fabs(back) >= kTolerance) {
                if (isStringOpen) shown_ += ')';
                isStringOpen = false;
                isArray = true;
                AppendDecimal(shown_, back, 1);
                pen.x -= back * em / 1000.0;
            }
            if (!isStringOpen) shown_ += '(';
            isStringOpen = true;
            font->AppendCode(shown_, code);
            pen.x += font->GetWidth(code) * em / 1000.0;
        }
        if (isMany) {
            end();
            Put("EMC\n");
        }
        first = last;
    }
    end();
}

void PdfContent::DrawImage(const ORVPrintImage& image) {
    if (!IsDrawable(image.toPage)) return;
    const ORVMathPoint2D corners[]{image.toPage({0.0, 0.0}), image.toPage({1.0, 0.0}),
                                   image.toPage({0.0, 1.0}), image.toPage({1.0, 1.0})};
    for (const ORVMathPoint2D& corner : corners)
        if (!(std::fabs(corner.x) < 10.0 * kLimit) || !(std::fabs(corner.y) < 10.0 * kLimit)) return;
    TouchBox({0.0, 1.0, 0.0, 1.0}, image.toPage);
    const PdfImage& found = document_.images.Find(image.image, true, document_.file);
    objects_.insert(found.object);
    isColoured_ |= !found.isGray;
    isTransparent_ |= found.hasAlpha;
    SetOpacity(255, state_.strokeOpacity);
    Save();
    // The format's images stand on their lower left corner.
    const ORVMathAffine2D upright = image.toPage * ORVMathAffine2D{1.0, 0.0, 0.0, -1.0, 0.0, 1.0};
    Concatenate(found.isTurned ? upright * found.turn : upright);
    PutName('X', found.object);
    Put("Do\n");
    Restore();
    Flush();
}

void PdfContent::DrawForm(const PdfForm& form, const ORVMathAffine2D& map) {
    if (form.object == 0 || !IsDrawable(map) || IsFlat(map)) return;
    if (std::fabs(map.dx) >= 10.0 * kLimit || std::fabs(map.dy) >= 10.0 * kLimit) return;
    TouchBox(form.box, map);
    paintMargin_ = std::max(paintMargin_, std::min(form.paintMargin * Enlargement(map), kLimit));
    objects_.insert(form.object);
    isColoured_ |= form.isColoured;
    isTransparent_ |= form.isTransparent;
    Save();
    // What the form takes to be in force.
    SetOpacity(255, 255);
    SetLine(state_.lineWidth, 0, 0, state_.miterLimit);
    SetDashes({}, 1.0);
    SetTextMode(0);
    for (const double factor : {map.m11, map.m21, map.m12, map.m22}) {
        AppendSignificant(content_, factor, kPdfFactorDigits);
        content_ += ' ';
    }
    PutPoint({map.dx, map.dy});
    Put("cm ");
    PutName('X', form.object);
    Put("Do\n");
    Restore();
    Flush();
}

void PdfContent::Touch(ORVMathBox2D box) {
    if (!clips_.empty()) box = Intersection(box, clips_.back());
    if (box.IsEmpty()) return;
    Unite(isForm_ ? wholeBox_ : boxes_.back(), box);
}

void PdfContent::TouchPath(const ORVPrintPath& path, const ORVMathAffine2D& map, double margin) {
    ORVMathBox2D box;
    for (const ORVMathPoint2D& p : path.points) box.Add(map(p));
    if (box.IsEmpty()) return;
    Touch({box.xMin - margin, box.xMax + margin, box.yMin - margin, box.yMax + margin});
}

void PdfContent::TouchBox(const ORVMathBox2D& box, const ORVMathAffine2D& map) {
    if (!IsMeasured() || box.IsEmpty()) return;
    ORVMathBox2D mapped;
    for (const ORVMathPoint2D& corner :
         {ORVMathPoint2D{box.xMin, box.yMin}, ORVMathPoint2D{box.xMax, box.yMin},
          ORVMathPoint2D{box.xMin, box.yMax}, ORVMathPoint2D{box.xMax, box.yMax}})
        mapped.Add(map(corner));
    Touch(mapped);
}

ORVMathBox2D PdfContent::EndBox() {
    const ORVMathBox2D whole = boxes_.back();
    boxes_.pop_back();
    if (!boxes_.empty()) Unite(boxes_.back(), whole);
    return Intersection(whole, area_);
}

std::string PdfContent::MakeResources() const {
    std::string resources = "<<";
    const auto list = [&resources](const char* kind, char prefix, const auto& objects) {
        if (objects.empty()) return;
        resources += kind;
        resources += "<<";
        for (const unsigned int object : objects) {
            resources += '/';
            resources += prefix;
            resources += std::to_string(object) + " ";
            AppendPdfReference(resources, object);
        }
        resources += ">>";
    };
    std::set<unsigned int> patterns;
    for (const Pattern& pattern : patterns_) patterns.insert(pattern.object);
    list("/Font", 'F', fonts_);
    list("/XObject", 'X', objects_);
    list("/Pattern", 'P', patterns);
    if (!opacities_.empty()) {
        resources += "/ExtGState<<";
        for (const auto& [fill, stroke] : opacities_) {
            resources += OpacityName(fill, stroke) + "<</ca ";
            AppendDecimal(resources, fill / 255.0, kPdfPlaces);
            resources += "/CA ";
            AppendDecimal(resources, stroke / 255.0, kPdfPlaces);
            resources += ">>";
        }
        resources += ">>";
    }
    return resources + ">>";
}

std::string PdfContent::FinishPage() {
    while (EndClip()) {
    }
    EndText();
    pieces_.push_back(document_.file.Reserve());
    document_.file.WriteStream(pieces_.back(), "", std::move(content_), PdfFile::Packing::kContent);

    std::string entries = "/Contents";
    if (pieces_.size() > 1) entries += '[';
    for (const unsigned int piece : pieces_) {
        entries += ' ';
        AppendPdfReference(entries, piece);
    }
    if (pieces_.size() > 1) entries += ']';
    entries += "/Resources" + MakeResources();
    if (isTransparent_)
        entries += std::string("/Group<</S/Transparency/CS/Device") + (isColoured_ ? "RGB" : "Gray") + ">>";
    return entries;
}

PdfForm PdfContent::FinishForm() {
    EndText();
    PdfForm form{0, wholeBox_, paintMargin_, isColoured_, isTransparent_};
    if (content_.empty() || wholeBox_.IsEmpty()) return form;
    // Readers cut to this box: lines reach beyond their points at corners.
    const double margin = paintMargin_ + 1.0;
    const auto limit = [](double coordinate) { return std::clamp(coordinate, -kLimit, kLimit); };
    std::string entries = "/Subtype/Form/BBox[";
    for (const double side :
         {std::floor(limit(wholeBox_.xMin - margin)), std::floor(limit(wholeBox_.yMin - margin)),
          std::ceil(limit(wholeBox_.xMax + margin)), std::ceil(limit(wholeBox_.yMax + margin))}) {
        AppendDecimal(entries, side, 0);
        entries += ' ';
    }
    entries.back() = ']';
    form.object = document_.file.Reserve();
    document_.file.WriteStream(form.object, entries + "/Resources" + MakeResources(), std::move(content_),
                               PdfFile::Packing::kContent);
    return form;
}
