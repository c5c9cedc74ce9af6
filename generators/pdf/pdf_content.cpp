#include "generators/pdf/pdf_content.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include "generators/common/glyph_outlines.h"
#include "generators/common/map_measures.h"
#include "generators/common/number_text.h"
#include "generators/common/path_range.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_fonts.h"
#include "generators/pdf/pdf_glyphs.h"
#include "generators/pdf/pdf_images.h"
#include "generators/pdf/pdf_syntax.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;
// Glyphs of other sizes (user units an em, on the page) cannot be seen, or are larger than any page.
constexpr double kSmallestGlyph = 1e-3;
constexpr double kLargestGlyph = 1e6;

/// @param p  a point of the page
bool IsFarOutside(const ORVMathPoint2D& p) {
    constexpr double kFar = 10.0 * kPdfCoordinateLimit;
    return !(std::fabs(p.x) < kFar) || !(std::fabs(p.y) < kFar);
}

double ToRange(double coordinate) {
    return std::clamp(coordinate, -kPdfCoordinateLimit, kPdfCoordinateLimit);
}

/// Coordinates are finer than any printer, and no finer than a page's size asks for.
int PlacesFor(double longestSide) {
    constexpr double kLarge = 400.0, kSmall = 40.0;
    return longestSide >= kLarge ? 3 : longestSide >= kSmall ? 4 : 5;
}

}  // namespace

PdfContent::PdfContent(PdfDocumentObjects& document, double width, double height)
    : document_(document),
      toDefault_{kPointsPerUserUnit, 0.0, 0.0, -kPointsPerUserUnit, 0.0, height * kPointsPerUserUnit},
      out_(&document.file, PlacesFor(std::max(width, height))),
      extent_({0.0, width, 0.0, height}) {
    out_.Concatenate(toDefault_);
}

PdfContent::PdfContent(PdfDocumentObjects& document) : document_(document), out_(nullptr, 4) {
    out_.ForgetPaint();
}

void PdfContent::BeginClip(const ORVMathBox2D& box) {
    ORVMathBox2D cut{0.0, 0.0, 0.0, 0.0};
    if (!box.IsEmpty()) cut = {ToRange(box.xMin), ToRange(box.xMax), ToRange(box.yMin), ToRange(box.yMax)};
    extent_.BeginClip(cut);
    out_.Save();
    out_.PutPoint({cut.xMin, cut.yMin});
    out_.PutPoint({cut.xMax - cut.xMin, cut.yMax - cut.yMin});
    out_.Put("re W n\n");
}

bool PdfContent::EndClip() {
    if (!extent_.EndClip()) return false;
    out_.Restore();
    return true;
}

void PdfContent::SetFill(const ORVPrintFill& fill) {
    if (fill.pattern)
        out_.SetFillPattern(
            out_.GetResources().FindPattern(fill, toDefault_, document_.images, document_.file));
    else
        out_.SetFill(fill.colour);
    out_.SetFillOpacity(fill.colour.opacity);
}

void PdfContent::DrawShape(const ORVPrintShape& shape) {
    if (!IsDrawable(shape.toPage)) return;
    const bool isSimple = !shape.stroke || KeepsAngles(shape.toPage);
    const double scale = Enlargement(shape.toPage);
    if (extent_.IsMeasured()) {
        const double margin =
            shape.stroke ? 0.5 * std::min(shape.stroke->width * scale, kPdfCoordinateLimit) : 0.0;
        extent_.AddPath(shape.path, shape.toPage, margin);
        if (shape.stroke) extent_.AddPaintMargin(margin * std::clamp(shape.stroke->miterLimit, 2.0, 100.0));
    }

    const ORVPrintPath* fillPath =
        shape.fill ? &FitPathToRange(shape.path, shape.toPage, kPdfCoordinateLimit, PathUse::kFill, fitted_)
                   : nullptr;
    // One operator paints both, but where they overlap an opacity of the stroke would show the fill's
    // absence.
    if (fillPath == &shape.path && shape.stroke && isSimple && shape.stroke->colour.opacity == 255) {
        SetFill(*shape.fill);
        out_.SetStroke(*shape.stroke, scale);
        out_.PutPath(shape.path, shape.toPage);
        out_.Put(shape.fill->evenOdd ? "B*\n" : "B\n");
        return out_.Flush();
    }
    if (fillPath) {
        SetFill(*shape.fill);
        out_.PutPath(*fillPath, shape.toPage);
        out_.Put(fillPath->IsEmpty() ? "" : shape.fill->evenOdd ? "f*\n" : "f\n");
    }
    if (shape.stroke && !IsFlat(shape.toPage)) {
        const ORVPrintPath& path =
            FitPathToRange(shape.path, shape.toPage, kPdfCoordinateLimit, PathUse::kStroke, fitted_);
        if (path.IsEmpty()) return;
        if (isSimple) {
            out_.SetStroke(*shape.stroke, scale);
            out_.PutPath(path, shape.toPage);
            out_.Put("S\n");
        } else {
            // The pen goes through the map. The path's own lengths are brought near those on the page, so
            // that their digits suffice.
            out_.Save();
            out_.Concatenate(shape.toPage * ORVMathAffine2D::Scaling(1.0 / scale, 1.0 / scale));
            out_.SetStroke(*shape.stroke, scale);
            out_.PutPath(path, ORVMathAffine2D::Scaling(scale, scale));
            out_.Put("S\n");
            out_.Restore();
        }
    }
    out_.Flush();
}

void PdfContent::DrawText(const ORVPrintText& text) {
    if (!IsDrawable(text.toPage) || IsFlat(text.toPage)) return;
    if (extent_.IsMeasured()) {
        const double advance = text.layout.advance, half = 0.5 * (text.layout.ascent + text.layout.descent);
        const bool isVertical = !text.layout.runs.empty() && text.layout.runs.front().vertical;
        extent_.AddBox(isVertical ? ORVMathBox2D{-half, half, -advance, 0.0}
                                  : ORVMathBox2D{0.0, advance, -text.layout.descent, text.layout.ascent},
                       text.toPage);
        // Glyphs may reach beyond the line's box, and lines around them do.
        for (const ORVGlyphRun& run : text.layout.runs)
            extent_.AddPaintMargin(std::min(2.0 * run.size * Enlargement(text.toPage), kPdfCoordinateLimit));
    }
    if (text.clip) {
        out_.Save();
        out_.PutPath(FitPathToRange(*text.clip, {}, kPdfCoordinateLimit, PathUse::kFill, fitted_), {});
        out_.Put("W n\n");
    }
    for (const ORVGlyphRun& run : text.layout.runs) {
        const double size = run.size * Enlargement(text.toPage);
        const bool isWithin = std::all_of(run.glyphs.begin(), run.glyphs.end(), [&](const ORVGlyph& glyph) {
            const ORVMathPoint2D p = text.toPage({glyph.x, glyph.y});
            return std::fabs(p.x) < kPdfCoordinateLimit && std::fabs(p.y) < kPdfCoordinateLimit;
        });
        if (isWithin && size > kSmallestGlyph && size < kLargestGlyph && !run.glyphs.empty())
            DrawRun(text, run);
    }
    if (text.clip) out_.Restore();
    out_.Flush();
}

void PdfContent::StrokeOutlines(const ORVPrintText& text, const ORVGlyphRun& run,
                                const ORVPrintStroke& stroke) {
    ORVCollectOutlines(run, outlines_);
    if (outlines_.IsEmpty()) return;
    // DrawShape counts boxes by itself; the text has been counted.
    std::vector<ORVMathBox2D> boxes;
    extent_.SwapBoxes(boxes);
    DrawShape({outlines_, text.toPage, nullptr, &stroke});
    extent_.SwapBoxes(boxes);
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
    if (byOperator) out_.SetStroke(*stroke, Enlargement(text.toPage));
    if (text.fill || byOperator) {
        out_.BeginText();
        out_.SetTextMode(!byOperator ? kFillMode : text.fill ? kBothMode : kStrokeMode);
        ShowPdfGlyphs(out_, document_.fonts, document_.file, text, run, shown_);
    }
    if (stroke && !byOperator) StrokeOutlines(text, run, *stroke);
    // Both kinds of line at once: the thickening went unseen so far.
    if (isThickened && text.stroke) StrokeOutlines(text, run, thickening);
}

void PdfContent::DrawImage(const ORVPrintImage& image) {
    if (!IsDrawable(image.toPage)) return;
    const ORVMathPoint2D corners[]{image.toPage({0.0, 0.0}), image.toPage({1.0, 0.0}),
                                   image.toPage({0.0, 1.0}), image.toPage({1.0, 1.0})};
    if (std::any_of(std::begin(corners), std::end(corners), IsFarOutside)) return;
    extent_.AddBox({0.0, 1.0, 0.0, 1.0}, image.toPage);
    const PdfImage& found = document_.images.Find(image.image, true, document_.file);
    out_.GetResources().AddObject(found.object);
    out_.GetResources().NotePaint(!found.isGray, found.hasAlpha);
    out_.SetFillOpacity(255);
    out_.Save();
    // The format's images stand on their lower left corner.
    const ORVMathAffine2D upright = image.toPage * ORVMathAffine2D{1.0, 0.0, 0.0, -1.0, 0.0, 1.0};
    out_.Concatenate(found.isTurned ? upright * found.turn : upright);
    out_.PutName('X', found.object);
    out_.Put("Do\n");
    out_.Restore();
    out_.Flush();
}

void PdfContent::DrawForm(const PdfForm& form, const ORVMathAffine2D& map) {
    if (form.object == 0 || !IsDrawable(map) || IsFlat(map)) return;
    if (IsFarOutside({map.dx, map.dy})) return;
    extent_.AddBox(form.box, map);
    extent_.AddPaintMargin(std::min(form.paintMargin * Enlargement(map), kPdfCoordinateLimit));
    out_.GetResources().AddObject(form.object);
    out_.GetResources().NotePaint(form.isColoured, form.isTransparent);
    out_.Save();
    // What the form takes to be in force.
    out_.SetOpacity(255, 255);
    out_.SetPlainLine();
    out_.SetTextMode(0);
    out_.PutFactors(map);
    out_.PutPoint({map.dx, map.dy});
    out_.Put("cm ");
    out_.PutName('X', form.object);
    out_.Put("Do\n");
    out_.Restore();
    out_.Flush();
}

std::string PdfContent::FinishPage() {
    while (EndClip()) {
    }
    const std::vector<unsigned int> pieces = out_.Finish();
    std::string entries = "/Contents";
    if (pieces.size() > 1) entries += '[';
    for (const unsigned int piece : pieces) {
        entries += ' ';
        AppendPdfReference(entries, piece);
    }
    if (pieces.size() > 1) entries += ']';
    const PdfResources& resources = out_.GetResources();
    entries += "/Resources" + resources.MakeDictionary();
    if (resources.IsTransparent()) {
        entries += "/Group<</S/Transparency/CS/Device";
        entries += resources.IsColoured() ? "RGB>>" : "Gray>>";
    }
    return entries;
}

PdfForm PdfContent::FinishForm() {
    const ORVMathBox2D& box = extent_.GetWholeBox();
    const PdfResources& resources = out_.GetResources();
    std::string content = out_.Take();
    PdfForm form{0, box, extent_.GetPaintMargin(), resources.IsColoured(), resources.IsTransparent()};
    if (content.empty() || box.IsEmpty()) return form;
    // Readers cut to this box: lines reach beyond their points at corners.
    const double margin = extent_.GetPaintMargin() + 1.0;
    std::string entries = "/Subtype/Form/BBox[";
    for (const double side : {std::floor(ToRange(box.xMin - margin)), std::floor(ToRange(box.yMin - margin)),
                              std::ceil(ToRange(box.xMax + margin)), std::ceil(ToRange(box.yMax + margin))}) {
        AppendDecimal(entries, side, 0);
        entries += ' ';
    }
    entries.back() = ']';
    form.object = document_.file.Reserve();
    document_.file.WriteStream(form.object, entries + "/Resources" + resources.MakeDictionary(),
                               std::move(content), PdfFile::Packing::kContent);
    return form;
}
