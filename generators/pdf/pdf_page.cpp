#include "generators/pdf/pdf_page.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "generators/common/glyph_outlines.h"
#include "generators/common/path_range.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_fonts.h"
#include "generators/pdf/pdf_images.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;
// What lies farther out (user units) is cut off: no page is larger, and readers hold coordinates in few bits.
constexpr double kLimit = 40'000.0;
// Maps that enlarge or reduce areas beyond this show nothing.
constexpr double kAreaLimit = 1e60;
// Glyphs of other sizes (user units an em, on the page) cannot be seen, or are larger than any page.
constexpr double kSmallestGlyph = 1e-3;
constexpr double kLargestGlyph = 1e6;
// Dashes of a shorter period (user units) look like a solid line.
constexpr double kShortestDashPeriod = 0.02;
// Maps that flatten more than this (ratio of the axes) leave no width to a pen and no height to a glyph;
// readers take them for maps without an inverse.
constexpr double kFlattest = 1e-8;
// A line of width 0 would be drawn as thin as the device can.
constexpr double kThinnestLine = 1e-4;
constexpr std::size_t kFlushSize = 1U << 15U;

bool IsDrawable(const ORVMathAffine2D& map) {
    const double area = std::fabs(map.Determinant());
    return map.IsFinite() && area < kAreaLimit && area > 1.0 / kAreaLimit;
}

double Enlargement(const ORVMathAffine2D& map) {
    return std::max(std::hypot(map.m11, map.m21), std::hypot(map.m12, map.m22));
}

bool IsFlat(const ORVMathAffine2D& map) {
    const double scale = Enlargement(map);
    return !(std::fabs(map.Determinant()) > kFlattest * scale * scale);
}

/// True for maps under which a pen stays round.
bool KeepsAngles(const ORVMathAffine2D& map) {
    const double x = map.m11 * map.m11 + map.m21 * map.m21, y = map.m12 * map.m12 + map.m22 * map.m22;
    const double mixed = map.m11 * map.m12 + map.m21 * map.m22;
    const double tolerance = 1e-9 * (x + y);
    return std::fabs(x - y) <= tolerance && std::fabs(mixed) <= tolerance;
}

std::string Fraction(int value) {
    std::string text;
    AppendPdfNumber(text, value / 255.0);
    return text;
}

std::string ColourOperator(const ORVPrintColour& colour, bool forStroke) {
    if (colour.red == colour.green && colour.red == colour.blue)
        return Fraction(colour.red) + (forStroke ? " G" : " g");
    return Fraction(colour.red) + " " + Fraction(colour.green) + " " + Fraction(colour.blue) +
           (forStroke ? " RG" : " rg");
}

int ToPdf(ORVPrintStroke::Cap cap) {
    return cap == ORVPrintStroke::Cap::kRound ? 1 : cap == ORVPrintStroke::Cap::kSquare ? 2 : 0;
}

int ToPdf(ORVPrintStroke::Join join) {
    return join == ORVPrintStroke::Join::kRound ? 1 : join == ORVPrintStroke::Join::kBevel ? 2 : 0;
}

/// Maps a rectangle's outline to one along the axes. @return false when the path is none, or its map turns it
bool IsRectangle(const ORVPrintPath& path, const ORVMathAffine2D& map, ORVMathPoint2D& corner,
                 ORVMathPoint2D& opposite) {
    using Verb = ORVPrintPath::Verb;
    if (path.points.size() != 4 ||
        path.verbs != std::vector<Verb>{Verb::kMove, Verb::kLine, Verb::kLine, Verb::kLine, Verb::kClose})
        return false;
    const ORVMathPoint2D a = map(path.points[0]), b = map(path.points[1]), c = map(path.points[2]),
                         d = map(path.points[3]);
    corner = a;
    opposite = c;
    return (a.y == b.y && b.x == c.x && c.y == d.y && d.x == a.x) ||
           (a.x == b.x && b.y == c.y && c.x == d.x && d.y == a.y);
}

}  // namespace

PdfPage::PdfPage(PdfDocumentObjects& document, unsigned int contentObject, double width, double height)
    : document_(document), width_(width), height_(height) {
    document_.file.BeginStream(contentObject, "");
    PutMap({kPointsPerUserUnit, 0.0, 0.0, -kPointsPerUserUnit, 0.0, height * kPointsPerUserUnit});
    Put("cm\n");
}

void PdfPage::PutNumber(double number) {
    AppendPdfNumber(content_, number);
    content_ += ' ';
}

void PdfPage::PutPoint(const ORVMathPoint2D& p) {
    PutNumber(p.x);
    PutNumber(p.y);
}

void PdfPage::PutMap(const ORVMathAffine2D& map) {
    for (const double factor : {map.m11, map.m21, map.m12, map.m22, map.dx, map.dy}) {
        AppendPdfFactor(content_, factor);
        content_ += ' ';
    }
}

void PdfPage::PutPath(const ORVPrintPath& path, const ORVMathAffine2D& map) {
    ORVMathPoint2D corner, opposite;
    if (IsRectangle(path, map, corner, opposite)) {
        PutPoint(corner);
        PutPoint({opposite.x - corner.x, opposite.y - corner.y});
        Put("re\n");
        return;
    }
    auto p = path.points.begin();
    for (const ORVPrintPath::Verb verb : path.verbs) {
        switch (verb) {
            case ORVPrintPath::Verb::kMove:
                PutPoint(map(*p++));
                Put("m\n");
                break;
            case ORVPrintPath::Verb::kLine:
                PutPoint(map(*p++));
                Put("l\n");
                break;
            case ORVPrintPath::Verb::kCubic:
                for (int i = 0; i < 3; ++i) PutPoint(map(*p++));
                Put("c\n");
                break;
            case ORVPrintPath::Verb::kClose: Put("h\n"); break;
        }
        Flush();
    }
}

void PdfPage::Flush() {
    if (content_.size() < kFlushSize) return;
    document_.file.AppendToStream(content_);
    content_.clear();
}

void PdfPage::Save() {
    saved_.push_back(state_);
    Put("q\n");
}

void PdfPage::Concatenate(const ORVMathAffine2D& map) {
    PutMap(map);
    Put("cm\n");
}

void PdfPage::Restore() {
    state_ = std::move(saved_.back());
    saved_.pop_back();
    Put("Q\n");
}

void PdfPage::BeginClip(const ORVMathBox2D& box) {
    Save();
    ++openClips_;
    if (box.IsEmpty()) return Put("0 0 0 0 re W n\n");
    const auto cut = [](double coordinate) { return std::clamp(coordinate, -kLimit, kLimit); };
    const ORVMathPoint2D corner{cut(box.xMin), cut(box.yMin)};
    PutPoint(corner);
    PutPoint({cut(box.xMax) - corner.x, cut(box.yMax) - corner.y});
    Put("re W n\n");
}

bool PdfPage::EndClip() {
    if (openClips_ == 0) return false;
    --openClips_;
    Restore();
    return true;
}

std::string PdfPage::FindPattern(const ORVPrintFill& fill) {
    const ORVMathAffine2D& map = fill.patternToPage;
    const auto found = std::find_if(patterns_.begin(), patterns_.end(), [&](const Pattern& pattern) {
        const ORVMathAffine2D& m = pattern.map;
        return pattern.image == fill.pattern && m.m11 == map.m11 && m.m12 == map.m12 && m.m21 == map.m21 &&
               m.m22 == map.m22 && m.dx == map.dx && m.dy == map.dy;
    });
    if (found != patterns_.end()) return "/P" + std::to_string(found->object);

    const unsigned int object = document_.file.Reserve();
    const std::string image = std::to_string(document_.images.Find(*fill.pattern, false, document_.file));
    const std::string width = std::to_string(fill.pattern->GetWidth()),
                      height = std::to_string(fill.pattern->GetHeight());
    // A pattern's coordinates are the page's own, whatever map is in force: points, y up.
    const ORVMathAffine2D toPoints = ORVMathAffine2D{kPointsPerUserUnit,  0.0, 0.0,
                                                     -kPointsPerUserUnit, 0.0, height_ * kPointsPerUserUnit} *
                                     map;
    std::string entries = "/Type/Pattern/PatternType 1/PaintType 1/TilingType 1/BBox[0 0 " + width + " " +
                          height + "]/XStep " + width + "/YStep " + height + "/Resources<</XObject<</I " +
                          image + " 0 R>>>>/Matrix[";
    for (const double factor :
         {toPoints.m11, toPoints.m21, toPoints.m12, toPoints.m22, toPoints.dx, toPoints.dy}) {
        AppendPdfFactor(entries, factor);
        entries += ' ';
    }
    entries += "]";
    pendingPatterns_.emplace_back(
        object, entries + "\n" + width + " 0 0 -" + height + " 0 " + height + " cm /I Do\n");
    patterns_.push_back({fill.pattern, map, object});
    return "/P" + std::to_string(object);
}

void PdfPage::SetOpacity(int fill, int stroke) {
    if (state_.fillOpacity == fill && state_.strokeOpacity == stroke) return;
    state_.fillOpacity = fill;
    state_.strokeOpacity = stroke;
    opacities_.emplace(fill, stroke);
    Put("/A" + std::to_string(fill) + "_" + std::to_string(stroke) + " gs\n");
}

void PdfPage::SetFill(const ORVPrintFill& fill) {
    const std::string colour =
        fill.pattern ? "/Pattern cs " + FindPattern(fill) + " scn" : ColourOperator(fill.colour, false);
    if (state_.fill != colour) {
        state_.fill = colour;
        Put(colour + "\n");
    }
    SetOpacity(fill.colour.opacity, state_.strokeOpacity);
}

void PdfPage::SetStrokeColour(const ORVPrintColour& colour) {
    const std::string command = ColourOperator(colour, true);
    if (state_.stroke != command) {
        state_.stroke = command;
        Put(command + "\n");
    }
    SetOpacity(state_.fillOpacity, colour.opacity);
}

void PdfPage::SetLine(double width, int cap, int join, double miterLimit) {
    if (state_.lineWidth != width) {
        PutNumber(width);
        Put("w\n");
    }
    if (state_.cap != cap) Put(std::to_string(cap) + " J\n");
    if (state_.join != join) Put(std::to_string(join) + " j\n");
    if (join == 0 && state_.miterLimit != miterLimit) {
        PutNumber(std::max(miterLimit, 1.0));
        Put("M\n");
        state_.miterLimit = miterLimit;
    }
    state_.lineWidth = width;
    state_.cap = cap;
    state_.join = join;
}

void PdfPage::SetDashes(std::vector<double> dashes) {
    if (state_.dashes == dashes) return;
    Put("[");
    for (const double dash : dashes) PutNumber(dash);
    Put("]0 d\n");
    state_.dashes = std::move(dashes);
}

void PdfPage::SetStroke(const ORVPrintStroke& stroke, double scale) {
    SetStrokeColour(stroke.colour);
    SetLine(std::clamp(stroke.width * scale, kThinnestLine, kLimit), ToPdf(stroke.cap), ToPdf(stroke.join),
            stroke.miterLimit);
    std::vector<double> dashes;
    if (std::accumulate(stroke.dashes.begin(), stroke.dashes.end(), 0.0) * scale > kShortestDashPeriod)
        for (const double dash : stroke.dashes) dashes.push_back(std::min(dash * scale, 10.0 * kLimit));
    SetDashes(std::move(dashes));
}

void PdfPage::SetTextMode(int mode) {
    if (state_.textMode == mode) return;
    state_.textMode = mode;
    Put(std::to_string(mode) + " Tr\n");
}

void PdfPage::DrawShape(const ORVPrintShape& shape) {
    if (!IsDrawable(shape.toPage)) return;
    const bool isSimple = !shape.stroke || KeepsAngles(shape.toPage);
    const double scale = Enlargement(shape.toPage);
    if (!boxes_.empty())
        Touch(shape.path, shape.toPage, shape.stroke ? 0.5 * shape.stroke->width * scale : 0.0);

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

void PdfPage::DrawText(const ORVPrintText& text) {
    if (!IsDrawable(text.toPage) || IsFlat(text.toPage)) return;
    if (!boxes_.empty()) {
        const double advance = text.layout.advance, half = 0.5 * (text.layout.ascent + text.layout.descent);
        const bool isVertical = !text.layout.runs.empty() && text.layout.runs.front().vertical;
        if (isVertical)
            TouchBox(-half, -advance, half, 0.0, text.toPage);
        else
            TouchBox(0.0, -text.layout.descent, advance, text.layout.ascent, text.toPage);
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

void PdfPage::StrokeOutlines(const ORVPrintText& text, const ORVGlyphRun& run, const ORVPrintStroke& stroke) {
    ORVCollectOutlines(run, outlines_);
    if (outlines_.IsEmpty()) return;
    // DrawShape counts boxes by itself; the text has been counted.
    std::vector<ORVMathBox2D> boxes;
    boxes.swap(boxes_);
    DrawShape({outlines_, text.toPage, nullptr, &stroke});
    boxes_.swap(boxes);
}

void PdfPage::DrawRun(const ORVPrintText& text, const ORVGlyphRun& run) {
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
        Put("BT\n");
        SetTextMode(!byOperator ? kFillMode : text.fill ? kBothMode : kStrokeMode);
        ShowGlyphs(text, run, text.toPage);
        Put("ET\n");
    }
    if (stroke && !byOperator) StrokeOutlines(text, run, *stroke);
    // Both kinds of line at once: the thickening went unseen so far.
    if (isThickened && text.stroke) StrokeOutlines(text, run, thickening);
}

void PdfPage::ShowGlyphs(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& map) {
    // Sizes stand in the matrix as well as in the font's size; the latter keeps the size on the page
    // readable.
    const double size = run.size * Enlargement(map);
    const double unit = run.size / size;
    const ORVMathAffine2D toPage = map * ORVMathAffine2D::Scaling(run.expansion * unit, unit);

    PdfFont* font = nullptr;
    std::string shown;       // of the array that is being built
    bool isHexOpen = false;  // within a string of it
    ORVMathPoint2D pen;      // where the next glyph would go by itself, in layout space
    const auto end = [&] {
        if (isHexOpen) shown += '>';
        if (!shown.empty()) Put("[" + shown + "]TJ\n");
        shown.clear();
        isHexOpen = false;
    };

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
            std::string actual = "/Span<</ActualText";
            AppendPdfText(actual, cluster);
            Put(actual + ">>BDC\n");
        }
        for (std::size_t i = first; i < last; ++i) {
            const ORVGlyph& glyph = glyphs[i];
            PdfFont* wanted = &document_.fonts.Find(*run.face, document_.file);
            unsigned int code = wanted->FindCode(glyph.index, isMany ? std::string_view() : cluster);
            if (code == 0) {
                wanted = &document_.fonts.AddFont(*run.face, document_.file);
                code = wanted->FindCode(glyph.index, isMany ? std::string_view() : cluster);
            }
            const bool isNewLine = !font || glyph.y != pen.y;
            if (wanted != font || isNewLine) end();
            if (wanted != font) {
                font = wanted;
                fonts_.insert(font->GetObject());
                Put("/F" + std::to_string(font->GetObject()) + " ");
                PutNumber(size);
                Put("Tf\n");
            }
            if (isNewLine || shown.empty()) {
                const ORVMathPoint2D at = map({glyph.x, glyph.y});
                ORVMathAffine2D matrix = toPage;
                matrix.dx = at.x;
                matrix.dy = at.y;
                PutMap(matrix);
                Put("Tm\n");
                pen = {glyph.x, glyph.y};
            }
            // Thousandths of an em that the pen is too far; rounded as written, so that errors do not add up.
            const double em = run.size * run.expansion;
            const double back = std::round((pen.x - glyph.x) / em * 1e5) / 100.0;
            if (std::fabs(back) >= 0.5) {
                if (isHexOpen) shown += '>';
                isHexOpen = false;
                AppendPdfNumber(shown, back);
                pen.x -= back * em / 1000.0;
            }
            if (!isHexOpen) shown += '<';
            isHexOpen = true;
            font->AppendCode(shown, code);
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

void PdfPage::DrawImage(const ORVPrintImage& image) {
    if (!IsDrawable(image.toPage)) return;
    const ORVMathPoint2D corners[]{image.toPage({0.0, 0.0}), image.toPage({1.0, 0.0}),
                                   image.toPage({0.0, 1.0}), image.toPage({1.0, 1.0})};
    for (const ORVMathPoint2D& corner : corners)
        if (!(std::fabs(corner.x) < 10.0 * kLimit) || !(std::fabs(corner.y) < 10.0 * kLimit)) return;
    if (!boxes_.empty()) TouchBox(0.0, 0.0, 1.0, 1.0, image.toPage);
    const unsigned int object = document_.images.Find(image.image, true, document_.file);
    images_.insert(object);
    SetOpacity(255, state_.strokeOpacity);
    Save();
    // The format's images stand on their lower left corner.
    Concatenate(image.toPage * ORVMathAffine2D{1.0, 0.0, 0.0, -1.0, 0.0, 1.0});
    Put("/I" + std::to_string(object) + " Do\n");
    Restore();
    Flush();
}

void PdfPage::Touch(const ORVPrintPath& path, const ORVMathAffine2D& map, double margin) {
    ORVMathBox2D& box = boxes_.back();
    for (const ORVMathPoint2D& p : path.points) {
        const ORVMathPoint2D mapped = map(p);
        box.Add({mapped.x - margin, mapped.y - margin});
        box.Add({mapped.x + margin, mapped.y + margin});
    }
}

void PdfPage::TouchBox(double xMin, double yMin, double xMax, double yMax, const ORVMathAffine2D& map) {
    for (const ORVMathPoint2D& corner : {ORVMathPoint2D{xMin, yMin}, ORVMathPoint2D{xMax, yMin},
                                         ORVMathPoint2D{xMin, yMax}, ORVMathPoint2D{xMax, yMax}})
        boxes_.back().Add(map(corner));
}

ORVMathBox2D PdfPage::EndBox() {
    const ORVMathBox2D whole = boxes_.back();
    boxes_.pop_back();
    if (whole.IsEmpty()) return whole;
    if (!boxes_.empty()) {
        boxes_.back().Add({whole.xMin, whole.yMin});
        boxes_.back().Add({whole.xMax, whole.yMax});
    }
    ORVMathBox2D visible;
    const double xMin = std::max(whole.xMin, 0.0), xMax = std::min(whole.xMax, width_);
    const double yMin = std::max(whole.yMin, 0.0), yMax = std::min(whole.yMax, height_);
    if (xMin <= xMax && yMin <= yMax) {
        visible.Add({xMin, yMin});
        visible.Add({xMax, yMax});
    }
    return visible;
}

std::string PdfPage::Finish() {
    document_.file.AppendToStream(content_);
    content_.clear();
    document_.file.EndStream();
    for (const auto& [object, pattern] : pendingPatterns_) {
        const std::size_t split = pattern.find('\n');
        document_.file.WriteStream(object, std::string_view(pattern).substr(0, split),
                                   std::string_view(pattern).substr(split + 1), false);
    }
    document_.images.WritePending(document_.file);

    std::string resources = "<<";
    const auto list = [&resources](const char* kind, char prefix, const auto& objects) {
        if (objects.empty()) return;
        resources += kind;
        resources += "<<";
        for (const unsigned int object : objects) {
            resources += '/';
            resources += prefix;
            resources += std::to_string(object) + " " + std::to_string(object) + " 0 R";
        }
        resources += ">>";
    };
    std::set<unsigned int> patterns;
    for (const Pattern& pattern : patterns_) patterns.insert(pattern.object);
    list("/Font", 'F', fonts_);
    list("/XObject", 'I', images_);
    list("/Pattern", 'P', patterns);
    if (!opacities_.empty()) {
        resources += "/ExtGState<<";
        for (const auto& [fill, stroke] : opacities_)
            resources += "/A" + std::to_string(fill) + "_" + std::to_string(stroke) + "<</ca " +
                         Fraction(fill) + "/CA " + Fraction(stroke) + ">>";
        resources += ">>";
    }
    return resources + ">>";
}
