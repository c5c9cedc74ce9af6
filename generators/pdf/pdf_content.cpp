// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_content.h"

#include <algorithm>
#include <array>
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
#include "generators/pdf/pdf_object_pool.h"
#include "generators/pdf/pdf_reach.h"
#include "generators/pdf/pdf_syntax.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;
// Glyphs smaller than this (user units per em, on the page) are invisible; larger ones exceed any page.
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

std::string_view NameOf(ORVPrintBlendMode blend) {
    constexpr std::array<std::string_view, 16> kNames{"Normal",    "Multiply",   "Screen",     "Overlay",
                                                      "Darken",    "Lighten",    "ColorDodge", "ColorBurn",
                                                      "HardLight", "SoftLight",  "Difference", "Exclusion",
                                                      "Hue",       "Saturation", "Color",      "Luminosity"};
    return kNames[static_cast<std::size_t>(blend)];
}

/// The graphics state under which a group is shown.
std::string StateOf(const PdfLayerPaint& paint) {
    std::string opacity, text = "<<";
    AppendDecimal(opacity, std::clamp(paint.opacity, 0.0, 1.0), kPdfPlaces);
    text += "/ca " + opacity + "/CA " + opacity;
    if (paint.blend != ORVPrintBlendMode::kNormal) (text += "/BM/") += NameOf(paint.blend);
    if (paint.mask != 0) {
        text += paint.maskKind == ORVPrintMask::Kind::kOpacity ? "/SMask<</S/Alpha"
                                                               : "/SMask<</S/Luminosity/BC[0 0 0]";
        // Approximates the sRGB transfer curve, accurately enough for masks.
        if (paint.maskKind == ORVPrintMask::Kind::kLinearLuminance)
            text += "/TR<</FunctionType 2/Domain[0 1]/N 2.2>>";
        text += "/G " + PdfReference(paint.mask) + ">>";
    }
    return text + ">>";
}

constexpr ORVMathBox2D kEverywhere{-kPdfCoordinateLimit, kPdfCoordinateLimit, -kPdfCoordinateLimit,
                                   kPdfCoordinateLimit};

// More digits, because errors accumulate over many tiles.
constexpr int kStepPlaces = 8;

/// Decimal places: finer than any printer, but limited by the size of the page.
int PlacesFor(double longestSide) {
    constexpr double kLarge = 400.0, kSmall = 40.0;
    return longestSide >= kLarge ? 3 : longestSide >= kSmall ? 4 : 5;
}

}  // namespace

PdfContent::PdfContent(PdfDocumentObjects& document, double width, double height)
    : document_(document),
      toDefault_{kPointsPerUserUnit, 0.0, 0.0, -kPointsPerUserUnit, 0.0, height * kPointsPerUserUnit},
      visible_{0.0, width, 0.0, height},
      out_(&document.file, PlacesFor(std::max(width, height))),
      extent_(std::make_shared<PdfExtent>(visible_)) {
    out_.Concatenate(toDefault_);
}

PdfContent::PdfContent(PdfDocumentObjects& document)
    : document_(document), visible_(kEverywhere), out_(nullptr, 4), extent_(std::make_shared<PdfExtent>()) {
    out_.ForgetPaint();
}

PdfContent::PdfContent(PdfContent& shownBy, const ORVMathBox2D& box, bool isOutOfSight)
    : document_(shownBy.document_),
      visible_(shownBy.VisiblePart(box)),
      out_(&document_.file, shownBy.out_.GetPlaces()),
      extent_(isOutOfSight ? std::make_shared<PdfExtent>(visible_) : shownBy.extent_) {
    out_.ForgetPaint();
    std::string written;
    AppendPdfBox(written, visible_, out_.GetPlaces());
    out_.ComeInForms(std::move(written));
    extent_->BeginClip(visible_);
}

ORVMathBox2D PdfContent::VisiblePart(const ORVMathBox2D& box) const { return PdfCommonBox(visible_, box); }

void PdfContent::BeginClip(const ORVMathBox2D& box) {
    ORVMathBox2D cut{0.0, 0.0, 0.0, 0.0};
    if (!box.IsEmpty()) cut = {ToRange(box.xMin), ToRange(box.xMax), ToRange(box.yMin), ToRange(box.yMax)};
    extent_->BeginClip(cut);
    out_.SaveForClip();
    out_.PutPoint({cut.xMin, cut.yMin});
    out_.PutPoint({cut.xMax - cut.xMin, cut.yMax - cut.yMin});
    out_.Put("re W n\n");
    out_.BeginClipped();
    ++openClips_;
}

void PdfContent::BeginClipPath(const ORVPrintClipPath& clip) {
    ORVMathBox2D box = PdfCommonBox(PdfPathBox(clip.path, clip.toPage), kEverywhere);
    const ORVPrintPath* path = nullptr;
    if (IsDrawable(clip.toPage) && !box.IsEmpty())
        path = &FitPathToRange(clip.path, clip.toPage, kPdfCoordinateLimit, PathUse::kFill, fitted_);
    if (path && path->IsEmpty()) path = nullptr;
    if (!path) box = {};
    extent_->BeginClip(box);
    out_.SaveForClip();
    if (path)
        out_.PutPath(*path, clip.toPage);
    else
        out_.Put("-1 -1 0 0 re\n");  // an empty path, which hides everything
    out_.Put(clip.evenOdd ? "W* n\n" : "W n\n");
    out_.BeginClipped();
    ++openClips_;
}

bool PdfContent::EndClip() {
    if (openClips_ == 0) return false;
    --openClips_;
    extent_->EndClip();
    out_.EndClipped();
    return true;
}

PdfPaint PdfContent::MakeGradientPaint(const ORVPrintGradient& gradient, const ORVMathBox2D& box) {
    const PdfPaint paint = MakePdfGradientPaint(gradient, box, toDefault_, document_.pool);
    if (paint.pattern == 0) return paint;
    out_.GetResources().AddPattern(paint.pattern);
    out_.GetResources().NotePaint(true, paint.mask != 0);
    return paint;
}

PdfPaint PdfContent::MakePaint(const ORVPrintFill& fill, const ORVMathBox2D& box) {
    if (fill.gradient) return MakeGradientPaint(*fill.gradient, box);
    PdfPaint paint{fill.colour};
    if (fill.pattern)
        paint.pattern = out_.GetResources().FindPattern(fill, toDefault_, document_.images, document_.file);
    return paint;
}

PdfPaint PdfContent::MakePaint(const ORVPrintStroke& stroke, const ORVMathBox2D& box) {
    return stroke.gradient ? MakeGradientPaint(*stroke.gradient, box) : PdfPaint{stroke.colour};
}

void PdfContent::SetFill(const PdfPaint& paint) {
    if (paint.pattern != 0)
        out_.SetFillPattern(paint.pattern);
    else
        out_.SetFill(paint.colour);
    out_.SetFillOpacity(paint.colour.opacity);
}

void PdfContent::SetStroke(const PdfPaint& paint, const ORVPrintStroke& stroke, double scale) {
    if (paint.pattern != 0)
        out_.SetStrokePattern(paint.pattern);
    else
        out_.SetStroke(paint.colour);
    out_.SetStrokeOpacity(paint.colour.opacity);
    out_.SetPen(stroke, scale);
}

void PdfContent::BeginMasked(const PdfPaint& paint) {
    if (paint.mask == 0) return;
    out_.Save();
    out_.SetState(paint.mask);
}

void PdfContent::EndMasked(const PdfPaint& paint) {
    if (paint.mask != 0) out_.Restore();
}

void PdfContent::DrawShape(const ORVPrintShape& shape) {
    if (!IsDrawable(shape.toPage) || visible_.IsEmpty()) return;
    const bool isSimple = !shape.stroke || KeepsAngles(shape.toPage);
    const double scale = shape.toPage.Enlargement();
    if (extent_->IsMeasured()) {
        const double margin = PdfHalfWidth(shape.stroke, scale);
        extent_->AddPath(shape.path, shape.toPage, margin);
        if (shape.stroke) extent_->AddPaintMargin(margin * PdfCornerReach(*shape.stroke));
    }
    ORVMathBox2D box;
    if ((shape.fill && shape.fill->gradient) || (shape.stroke && shape.stroke->gradient)) {
        box = VisiblePart(PdfPaintedBox(shape));
        if (box.IsEmpty()) return;
    }

    const ORVPrintPath* fillPath =
        shape.fill ? &FitPathToRange(shape.path, shape.toPage, kPdfCoordinateLimit, PathUse::kFill, fitted_)
                   : nullptr;
    // One operator can paint both, but with a transparent stroke the fill would be missing where they
    // overlap.
    const PdfPaint fill = fillPath ? MakePaint(*shape.fill, box) : PdfPaint();
    const PdfPaint stroke = shape.stroke ? MakePaint(*shape.stroke, box) : PdfPaint();
    if (fillPath == &shape.path && shape.stroke && isSimple && stroke.colour.opacity == 255 &&
        fill.mask == 0 && stroke.mask == 0) {
        SetFill(fill);
        SetStroke(stroke, *shape.stroke, scale);
        out_.PutPath(shape.path, shape.toPage);
        out_.Put(shape.fill->evenOdd ? "B*\n" : "B\n");
        return out_.Flush();
    }
    if (fillPath) {
        BeginMasked(fill);
        SetFill(fill);
        out_.PutPath(*fillPath, shape.toPage);
        out_.Put(fillPath->IsEmpty() ? "" : shape.fill->evenOdd ? "f*\n" : "f\n");
        EndMasked(fill);
    }
    if (shape.stroke && !IsFlat(shape.toPage)) StrokeShape(shape, stroke, isSimple, scale);
    out_.Flush();
}

void PdfContent::StrokeShape(const ORVPrintShape& shape, const PdfPaint& paint, bool isSimple, double scale) {
    const ORVPrintPath& path =
        FitPathToRange(shape.path, shape.toPage, kPdfCoordinateLimit, PathUse::kStroke, fitted_);
    if (path.IsEmpty()) return;
    BeginMasked(paint);
    if (isSimple) {
        SetStroke(paint, *shape.stroke, scale);
        out_.PutPath(path, shape.toPage);
        out_.Put("S\n");
    } else {
        // The pen is transformed with the path. Path coordinates are scaled to about page size, so that their
        // digits suffice.
        out_.Save();
        out_.Concatenate(shape.toPage * ORVMathAffine2D::Scaling(1.0 / scale, 1.0 / scale));
        SetStroke(paint, *shape.stroke, scale);
        out_.PutPath(path, ORVMathAffine2D::Scaling(scale, scale));
        out_.Put("S\n");
        out_.Restore();
    }
    EndMasked(paint);
}

void PdfContent::DrawText(const ORVPrintText& text) {
    if (!IsDrawable(text.toPage) || IsFlat(text.toPage) || visible_.IsEmpty()) return;
    const double scale = text.toPage.Enlargement();
    if (extent_->IsMeasured()) {
        extent_->AddBox(PdfLineBox(text.layout), text.toPage);
        for (const ORVGlyphRun& run : text.layout.runs) extent_->AddPaintMargin(PdfGlyphReach(run, scale));
    }
    if (text.clip) {
        out_.Save();
        out_.PutPath(FitPathToRange(*text.clip, {}, kPdfCoordinateLimit, PathUse::kFill, fitted_), {});
        out_.Put("W n\n");
    }
    for (const ORVGlyphRun& run : text.layout.runs) {
        const double size = run.size * scale;
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
    // DrawShape measures extents itself; the text has been measured already.
    std::vector<ORVMathBox2D> boxes;
    extent_->SwapBoxes(boxes);
    DrawShape({outlines_, text.toPage, nullptr, &stroke});
    extent_->SwapBoxes(boxes);
}

void PdfContent::DrawRun(const ORVPrintText& text, const ORVGlyphRun& run) {
    constexpr int kFillMode = 0, kStrokeMode = 1, kBothMode = 2, kUnseenMode = 3;
    const double scale = text.toPage.Enlargement();
    const bool isDrawnFont =
        document_.fonts.Find(*run.face, document_.file).GetKind() == PdfFont::Kind::kDrawn;

    // A family without a bold face is emboldened by a stroke in the fill's colour.
    ORVPrintStroke thickening;
    thickening.width = ORVFontFace::kSyntheticBoldStroke * run.size;
    thickening.join = ORVPrintStroke::Join::kRound;
    const bool isThickened = run.syntheticBold && text.fill && !text.fill->pattern;
    if (isThickened) {
        thickening.colour = text.fill->colour;
        thickening.gradient = text.fill->gradient;
    }

    // Strokes that the text operators can draw: not for Type 3 fonts; only with a similarity transformation,
    // for the pen; and not if the stroke has its own opacity, which must show the fill below.
    const ORVPrintStroke* stroke = text.stroke ? text.stroke : isThickened ? &thickening : nullptr;
    const bool hasGradient = (text.fill && text.fill->gradient) || (stroke && stroke->gradient);
    ORVMathBox2D box;
    if (hasGradient) {
        box = VisiblePart(PdfPaintedBox(text));
        if (box.IsEmpty()) return;
    }
    const PdfPaint fillPaint = text.fill ? MakePaint(*text.fill, box) : PdfPaint();
    // Not all readers support patterns for text strokes, and some paint pattern fills over the strokes.
    const bool byOperator = stroke && !isDrawnFont && KeepsAngles(text.toPage) && !hasGradient &&
                            (!text.fill || stroke == &thickening || stroke->colour.opacity == 255);
    // Text that only has a stroke drawn as outlines is added invisibly, so that it can be searched.
    const bool isUnseen = !text.fill && (hasGradient || !text.stroke) && !isDrawnFont;

    if (text.fill || byOperator || isUnseen) {
        BeginMasked(fillPaint);
        if (text.fill) SetFill(fillPaint);
        if (byOperator) SetStroke({stroke->colour}, *stroke, scale);
        out_.BeginText();
        out_.SetTextMode(isUnseen      ? kUnseenMode
                         : !byOperator ? kFillMode
                         : text.fill   ? kBothMode
                                       : kStrokeMode);
        ShowPdfGlyphs(out_, document_.fonts, document_.file, text, run, shown_);
        EndMasked(fillPaint);
    }
    if (stroke && !byOperator) StrokeOutlines(text, run, *stroke);
    // Both strokes at once: the emboldening has not been drawn yet.
    if (isThickened && text.stroke) StrokeOutlines(text, run, thickening);
}

void PdfContent::DrawImage(const ORVPrintImage& image) {
    if (!IsDrawable(image.toPage) || visible_.IsEmpty()) return;
    const ORVMathPoint2D corners[]{image.toPage({0.0, 0.0}), image.toPage({1.0, 0.0}),
                                   image.toPage({0.0, 1.0}), image.toPage({1.0, 1.0})};
    if (std::any_of(std::begin(corners), std::end(corners), IsFarOutside)) return;
    extent_->AddBox({0.0, 1.0, 0.0, 1.0}, image.toPage);
    const PdfImage& found = document_.images.Find(image.image, image.isSmooth, document_.file);
    out_.GetResources().AddObject(found.object);
    out_.GetResources().NotePaint(!found.isGray, found.hasAlpha);
    out_.SetFillOpacity(255);
    out_.Save();
    // PDF images have their origin at the lower left corner.
    const ORVMathAffine2D upright = image.toPage * ORVMathAffine2D{1.0, 0.0, 0.0, -1.0, 0.0, 1.0};
    out_.Concatenate(found.isTurned ? upright * found.turn : upright);
    out_.PutName('X', found.object);
    out_.Put("Do\n");
    out_.Restore();
    out_.Flush();
}

void PdfContent::DrawForm(const PdfForm& form, const ORVMathAffine2D& map) {
    if (form.object == 0 || !IsDrawable(map) || IsFlat(map) || visible_.IsEmpty()) return;
    if (IsFarOutside({map.dx, map.dy})) return;
    extent_->AddBox(form.box, map);
    extent_->AddPaintMargin(std::min(form.paintMargin * map.Enlargement(), kPdfCoordinateLimit));
    out_.GetResources().AddObject(form.object);
    out_.GetResources().NotePaint(form.isColoured, form.isTransparent);
    out_.Save();
    // The state that the form expects.
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

void PdfContent::DrawGroup(unsigned int group, const ORVMathBox2D& box, PdfLayerPaint paint) {
    if (group == 0 || visible_.IsEmpty()) return;
    if (paint.mask != 0 && paint.opacity != 1.0) {
        // Some readers also apply an opacity to a mask set with it.
        PdfContent inner(*this, box, true);
        inner.DrawGroup(group, box, {paint.opacity});
        group = inner.FinishGroup(paint.isIsolated);
        paint.opacity = 1.0;
    }
    out_.GetResources().AddObject(group);
    out_.GetResources().NotePaint(true, true);
    out_.Save();
    out_.SetPlainLine();
    out_.SetTextMode(0);
    if (paint.opacity == 1.0 && paint.blend == ORVPrintBlendMode::kNormal && paint.mask == 0)
        out_.SetOpacity(255, 255);
    else
        out_.SetState(document_.pool.Find(StateOf(paint)));
    out_.PutName('X', group);
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
    const ORVMathBox2D& box = extent_->GetWholeBox();
    const PdfResources& resources = out_.GetResources();
    std::string content = out_.Take();
    PdfForm form{0, box, extent_->GetPaintMargin(), resources.IsColoured(), resources.IsTransparent()};
    if (content.empty() || box.IsEmpty()) return form;
    // Readers clip to this box; strokes extend beyond their points at corners.
    const double margin = extent_->GetPaintMargin() + 1.0;
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

PdfForm PdfContent::FinishTile(const ORVPrintTiles& tiles, const PdfContent& shownBy) {
    while (EndClip()) {
    }
    const PdfResources& resources = out_.GetResources();
    std::string content = out_.Take();
    PdfForm cell{0, tiles.tile, 0.0, resources.IsColoured(), resources.IsTransparent()};
    if (content.empty()) return cell;
    std::string entries = "/Type/Pattern/PatternType 1/PaintType 1/TilingType 1/BBox";
    AppendPdfBox(entries, tiles.tile, out_.GetPlaces());
    entries += "/XStep ";
    AppendDecimal(entries, tiles.xStep, kStepPlaces);
    entries += "/YStep ";
    AppendDecimal(entries, tiles.yStep, kStepPlaces);
    entries += "/Matrix[";
    AppendPdfMap(entries, shownBy.toDefault_ * tiles.toPage);
    cell.object = document_.file.Reserve();
    document_.file.WriteStream(cell.object, entries + "]/Resources" + resources.MakeDictionary(),
                               std::move(content), PdfFile::Packing::kContent);
    return cell;
}

void PdfContent::DrawTiles(const PdfForm& cell, const ORVMathBox2D& box) {
    const ORVMathBox2D shown = VisiblePart(box);
    if (cell.object == 0 || shown.IsEmpty()) return;
    if (extent_->IsMeasured()) extent_->AddBox(shown, ORVMathAffine2D());
    out_.GetResources().AddPattern(cell.object);
    out_.GetResources().NotePaint(cell.isColoured, cell.isTransparent);
    PdfPaint paint;
    paint.pattern = cell.object;
    SetFill(paint);
    out_.PutPoint({shown.xMin, shown.yMin});
    out_.PutPoint({shown.xMax - shown.xMin, shown.yMax - shown.yMin});
    out_.Put("re f\n");
    out_.Flush();
}

unsigned int PdfContent::FinishGroup(bool isIsolated) {
    while (EndClip()) {
    }
    extent_->EndClip();
    std::string content = out_.Take();
    if (content.empty() || visible_.IsEmpty()) return 0;
    std::string entries = "/Subtype/Form/BBox";
    AppendPdfBox(entries, visible_, out_.GetPlaces());
    entries += "/Group<</S/Transparency/CS/DeviceRGB";
    entries += isIsolated ? "/I true>>" : ">>";
    const unsigned int object = document_.file.Reserve();
    document_.file.WriteStream(object, entries + "/Resources" + out_.GetResources().MakeDictionary(),
                               std::move(content), PdfFile::Packing::kContent);
    return object;
}
