// SPDX-License-Identifier: Apache-2.0
#include "generators/cairo/ORVCairoCanvas.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>
#include <string_view>
#include <vector>

#include "generators/cairo/cairo_packed_image.h"
#include "generators/common/generator_status.h"
#include "generators/common/glyph_outlines.h"
#include "generators/common/map_measures.h"
#include "generators/common/path_range.h"
#include "platform/system/ORVUnicodeString.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

// cairo has 24 integer bits for device coordinates; half of the range leaves room for pens.
constexpr double kDeviceLimit = 4'000'000.0;
// Maximum size of bitmap glyphs in the font library (device units per em); glyphs below the minimum are
// invisible.
constexpr double kLargestGlyph = 4000.0;
constexpr double kSmallestGlyph = 1e-5;
// Dashes of a shorter period (device units) look like a solid line, and some formats would round them to
// zero.
constexpr double kShortestDashPeriod = 0.1;
// cairo generates all dashes, even off the page, so paths are clipped to this limit first (device units). No
// page is larger.
constexpr double kDashedLimit = 40'000.0;

double Channel(std::uint8_t value) { return value / 255.0; }

/// Saves the state of a context and restores it on destruction.
class StateGuard {
public:
    explicit StateGuard(cairo_t* cr) : cr_(cr) { cairo_save(cr_); }
    ~StateGuard() { cairo_restore(cr_); }
    StateGuard(const StateGuard&) = delete;
    StateGuard& operator=(const StateGuard&) = delete;

private:
    cairo_t* cr_;
};

/// From pixels of a surface to those of the image it was made from.
ORVMathAffine2D PixelsOf(cairo_surface_t& surface, const ORVPixelImage& image) {
    return ORVMathAffine2D::Scaling(
        static_cast<double>(image.GetWidth()) / cairo_image_surface_get_width(&surface),
        static_cast<double>(image.GetHeight()) / cairo_image_surface_get_height(&surface));
}

cairo_line_cap_t ToCairo(ORVPrintStroke::Cap cap) {
    switch (cap) {
        case ORVPrintStroke::Cap::kRound: return CAIRO_LINE_CAP_ROUND;
        case ORVPrintStroke::Cap::kSquare: return CAIRO_LINE_CAP_SQUARE;
        case ORVPrintStroke::Cap::kButt: break;
    }
    return CAIRO_LINE_CAP_BUTT;
}

cairo_extend_t ToCairo(ORVPrintGradient::Spread spread) {
    switch (spread) {
        case ORVPrintGradient::Spread::kReflect: return CAIRO_EXTEND_REFLECT;
        case ORVPrintGradient::Spread::kRepeat: return CAIRO_EXTEND_REPEAT;
        case ORVPrintGradient::Spread::kPad: break;
    }
    return CAIRO_EXTEND_PAD;
}

cairo_line_join_t ToCairo(ORVPrintStroke::Join join) {
    switch (join) {
        case ORVPrintStroke::Join::kRound: return CAIRO_LINE_JOIN_ROUND;
        case ORVPrintStroke::Join::kBevel: return CAIRO_LINE_JOIN_BEVEL;
        case ORVPrintStroke::Join::kMiter:
        case ORVPrintStroke::Join::kMiterClip: break;
    }
    return CAIRO_LINE_JOIN_MITER;
}

/// The mapping between characters and glyphs of a run, in cairo's form.
struct CairoClusters {
    std::string_view text;
    std::vector<cairo_text_cluster_t> list;  // in logical order
};

/// Finds the clusters of a run. cairo would fail the whole page for an invalid one.
/// @return false if they do not cover text and glyphs completely, or the text is not UTF-8
bool FindClusters(std::string_view text, const ORVGlyphRun& run, CairoClusters& clusters) {
    std::size_t first = text.size(), end = 0, bytes = 0;
    for (const ORVGlyph& glyph : run.glyphs) {
        if (glyph.textLength == 0 && clusters.list.empty()) return false;
        if (glyph.textLength == 0) {
            ++clusters.list.back().num_glyphs;
            continue;
        }
        first = std::min<std::size_t>(first, glyph.textOffset);
        end = std::max<std::size_t>(end, std::size_t{glyph.textOffset} + glyph.textLength);
        bytes += glyph.textLength;
        clusters.list.push_back({static_cast<int>(glyph.textLength), 1});
    }
    if (end > text.size() || first >= end || bytes != end - first) return false;
    if (run.rightToLeft) std::reverse(clusters.list.begin(), clusters.list.end());
    clusters.text = text.substr(first, end - first);
    return ORVIsWellFormedUTF8(clusters.text);
}

// Of two stops at an end, cairo takes the wrong one for the area beyond; and between the last stop of a
// repeated gradient and the first one of the next period, it mixes their colours. So there is one stop at 0
// and one at 1, and all others are a step away from them that is too small to see.
void AddStops(std::span<const ORVPrintGradientStop> stops, cairo_pattern_t* pattern) {
    constexpr double kStep = 1.0 / 65536.0;
    const auto add = [pattern](double offset, const ORVPrintColour& colour) {
        cairo_pattern_add_color_stop_rgba(pattern, offset, Channel(colour.red), Channel(colour.green),
                                          Channel(colour.blue), Channel(colour.opacity));
    };
    if (stops.empty()) return;
    add(0.0, stops.front().colour);
    for (const ORVPrintGradientStop& stop : stops) {
        const bool isAnEnd =
            (&stop == &stops.front() && stop.offset <= 0.0) || (&stop == &stops.back() && stop.offset >= 1.0);
        if (!isAnEnd) add(std::clamp<double>(stop.offset, kStep, 1.0 - kStep), stop.colour);
    }
    add(1.0, stops.back().colour);
}

}  // namespace

void ORVCairoCanvas::SetTarget(cairo_t* context, double scale) {
    cr_ = context;
    scale_ = scale;
}

int ORVCairoCanvas::Status() const {
    return cr_ && cairo_status(cr_) == CAIRO_STATUS_SUCCESS ? kGeneratorDone : kDrawingFailed;
}

ORVMathAffine2D ORVCairoCanvas::ToDevice(const ORVMathAffine2D& toPage) const {
    return ORVMathAffine2D::Scaling(scale_, scale_) * toPage;
}

cairo_matrix_t ORVCairoCanvas::DeviceMatrix(const ORVMathAffine2D& toPage) const {
    const ORVMathAffine2D map = ToDevice(toPage);
    return {map.m11, map.m21, map.m12, map.m22, map.dx, map.dy};
}

void ORVCairoCanvas::AddPath(const ORVPrintPath& path) {
    auto p = path.points.begin();
    for (const ORVPrintPath::Verb verb : path.verbs) {
        switch (verb) {
            case ORVPrintPath::Verb::kMove:
                cairo_move_to(cr_, p->x, p->y);
                ++p;
                break;
            case ORVPrintPath::Verb::kLine:
                cairo_line_to(cr_, p->x, p->y);
                ++p;
                break;
            case ORVPrintPath::Verb::kCubic:
                cairo_curve_to(cr_, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
                p += 3;
                break;
            case ORVPrintPath::Verb::kClose: cairo_close_path(cr_); break;
        }
    }
}

void ORVCairoCanvas::SetColour(const ORVPrintColour& colour) {
    cairo_set_source_rgba(cr_, Channel(colour.red), Channel(colour.green), Channel(colour.blue),
                          Channel(colour.opacity));
}

bool ORVCairoCanvas::SetGradient(const ORVPrintGradient& gradient) {
    const std::optional<ORVMathAffine2D> fromPage = gradient.toPage.Inverse();
    if (!IsDrawable(ToDevice(gradient.toPage)) || !fromPage) return false;
    const ORVMathPoint2D &start = gradient.start, &end = gradient.end;
    const CairoPattern pattern(gradient.kind == ORVPrintGradient::Kind::kLinear
                                   ? cairo_pattern_create_linear(start.x, start.y, end.x, end.y)
                                   : cairo_pattern_create_radial(start.x, start.y, gradient.startRadius,
                                                                 end.x, end.y, gradient.endRadius));
    AddStops(gradient.stops, pattern.get());
    cairo_pattern_set_extend(pattern.get(), ToCairo(gradient.spread));
    SetPagePattern(pattern.get(), *fromPage);
    return true;
}

void ORVCairoCanvas::SetPagePattern(cairo_pattern_t* pattern, const ORVMathAffine2D& fromPage) {
    const cairo_matrix_t matrix{fromPage.m11, fromPage.m21, fromPage.m12,
                                fromPage.m22, fromPage.dx,  fromPage.dy};
    cairo_pattern_set_matrix(pattern, &matrix);
    // cairo fixes the source's position when it is set, so later matrices do not affect it.
    const cairo_matrix_t page = DeviceMatrix({});
    cairo_set_matrix(cr_, &page);
    cairo_set_source(cr_, pattern);
}

void ORVCairoCanvas::SetFillSource(const ORVPrintFill& fill) {
    if (fill.gradient && SetGradient(*fill.gradient)) return;
    cairo_surface_t* tile = fill.pattern ? images_.Find(*fill.pattern) : nullptr;
    std::optional<ORVMathAffine2D> fromPage;
    if (tile) fromPage = (fill.patternToPage * PixelsOf(*tile, *fill.pattern)).Inverse();
    if (!fromPage) {
        SetColour(fill.colour);
        return;
    }
    const CairoPattern pattern(cairo_pattern_create_for_surface(tile));
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_REPEAT);
    SetPagePattern(pattern.get(), *fromPage);
}

void ORVCairoCanvas::Fill(const ORVPrintFill& fill) {
    cairo_set_fill_rule(cr_, fill.evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
    if (fill.pattern && fill.colour.opacity < 255) {
        const StateGuard guard(cr_);
        cairo_clip(cr_);
        cairo_paint_with_alpha(cr_, Channel(fill.colour.opacity));
    } else {
        cairo_fill(cr_);
    }
}

void ORVCairoCanvas::SetStroke(const ORVPrintStroke& stroke, const ORVMathAffine2D& toPage) {
    if (!stroke.gradient || !SetGradient(*stroke.gradient)) SetColour(stroke.colour);
    const cairo_matrix_t matrix = DeviceMatrix(toPage);
    cairo_set_matrix(cr_, &matrix);
    const double enlargement = ToDevice(toPage).Enlargement();
    cairo_set_line_width(cr_, std::min(stroke.width, kDeviceLimit / enlargement));
    cairo_set_line_cap(cr_, ToCairo(stroke.cap));
    cairo_set_line_join(cr_, ToCairo(stroke.join));
    cairo_set_miter_limit(cr_, stroke.miterLimit);
    const double period = std::accumulate(stroke.dashes.begin(), stroke.dashes.end(), 0.0);
    const bool isDashed = period * enlargement > kShortestDashPeriod;
    cairo_set_dash(cr_, stroke.dashes.data(), isDashed ? static_cast<int>(stroke.dashes.size()) : 0,
                   stroke.dashOffset);
}

int ORVCairoCanvas::BeginClip(const ORVMathBox2D& box) {
    cairo_save(cr_);
    // An empty box makes an empty path, which clips everything.
    cairo_new_path(cr_);
    if (!box.IsEmpty())
        cairo_rectangle(cr_, box.xMin * scale_, box.yMin * scale_, (box.xMax - box.xMin) * scale_,
                        (box.yMax - box.yMin) * scale_);
    cairo_clip(cr_);
    return Status();
}

int ORVCairoCanvas::BeginClipPath(const ORVPrintClipPath& clip) {
    cairo_save(cr_);
    cairo_new_path(cr_);
    const ORVMathAffine2D toDevice = ToDevice(clip.toPage);
    if (IsDrawable(toDevice)) {
        cairo_matrix_t before;
        cairo_get_matrix(cr_, &before);
        const cairo_matrix_t matrix = DeviceMatrix(clip.toPage);
        cairo_set_matrix(cr_, &matrix);
        AddPath(FitPathToRange(clip.path, toDevice, kDeviceLimit, PathUse::kFill, fitted_));
        cairo_set_matrix(cr_, &before);
    }
    cairo_set_fill_rule(cr_, clip.evenOdd ? CAIRO_FILL_RULE_EVEN_ODD : CAIRO_FILL_RULE_WINDING);
    cairo_clip(cr_);
    return Status();
}

int ORVCairoCanvas::EndClip() {
    cairo_restore(cr_);
    return Status();
}

int ORVCairoCanvas::DrawShape(const ORVPrintShape& shape) {
    if (!cr_) return kDrawingFailed;
    const ORVMathAffine2D toDevice = ToDevice(shape.toPage);
    if (!IsDrawable(toDevice)) return kGeneratorDone;
    const StateGuard guard(cr_);
    const cairo_matrix_t matrix = DeviceMatrix(shape.toPage);
    if (shape.fill) {
        SetFillSource(*shape.fill);
        cairo_set_matrix(cr_, &matrix);
        cairo_new_path(cr_);
        AddPath(FitPathToRange(shape.path, toDevice, kDeviceLimit, PathUse::kFill, fitted_));
        Fill(*shape.fill);
    }
    // cairo treats a pen or a font of zero size as an error, which would end the document.
    if (shape.stroke && !IsFlat(toDevice)) {
        SetStroke(*shape.stroke, shape.toPage);
        cairo_new_path(cr_);
        const double limit = cairo_get_dash_count(cr_) > 0 ? kDashedLimit : kDeviceLimit;
        AddPath(FitPathToRange(shape.path, toDevice, limit, PathUse::kStroke, fitted_));
        cairo_stroke(cr_);
    }
    return Status();
}

/// cairo assumes that glyphs extend no farther from their origins than the font's widest advance or its
/// height, and clips them there. It gets these from the font, which reports them for its default instance.
bool ORVCairoCanvas::ReachesTooFar(const ORVGlyphRun& run) {
    if (run.face->GetVariations().empty()) return false;
    cairo_font_extents_t font;
    cairo_font_extents(cr_, &font);
    const double reach = std::max({font.max_x_advance, font.height, font.ascent});
    outlines_.Clear();
    ORVGlyphOutlineCollector collector(outlines_, run.expansion);
    for (const ORVGlyph& glyph : run.glyphs) run.face->DrawGlyph(glyph.index, run.size, collector);
    return std::any_of(outlines_.points.begin(), outlines_.points.end(), [&](const ORVMathPoint2D& p) {
        return std::fabs(p.x) > reach || std::fabs(p.y) > reach;
    });
}

bool ORVCairoCanvas::ShowGlyphs(const ORVPrintText& text, const ORVGlyphRun& run) {
    // Embedded fonts are untrusted. cairo's font subsetter gets only their outlines, never the file.
    if (run.face->IsOfDocument()) return false;
    cairo_font_face_t* face = fonts_.Find(*run.face);
    if (!face) return false;
    cairo_set_font_face(cr_, face);
    // In text space y points up; cairo's glyphs expect it to point down.
    const cairo_matrix_t fontMatrix{run.size * run.expansion, 0.0, 0.0, -run.size, 0.0, 0.0};
    cairo_set_font_matrix(cr_, &fontMatrix);
    if (ReachesTooFar(run)) return false;
    std::vector<cairo_glyph_t> glyphs;
    glyphs.reserve(run.glyphs.size());
    for (const ORVGlyph& glyph : run.glyphs) glyphs.push_back({glyph.index, glyph.x, glyph.y});
    const auto count = static_cast<int>(glyphs.size());
    CairoClusters clusters;
    if (FindClusters(text.text, run, clusters))
        cairo_show_text_glyphs(
            cr_, clusters.text.data(), static_cast<int>(clusters.text.size()), glyphs.data(), count,
            clusters.list.data(), static_cast<int>(clusters.list.size()),
            run.rightToLeft ? CAIRO_TEXT_CLUSTER_FLAG_BACKWARD : static_cast<cairo_text_cluster_flags_t>(0));
    else
        cairo_show_glyphs(cr_, glyphs.data(), count);
    return true;
}

bool ORVCairoCanvas::AddOutlines(const ORVPrintText& text, const ORVGlyphRun& run) {
    ORVCollectOutlines(run, outlines_);
    cairo_new_path(cr_);
    AddPath(FitPathToRange(outlines_, ToDevice(text.toPage), kDeviceLimit, PathUse::kStroke, fitted_));
    return !outlines_.IsEmpty();
}

void ORVCairoCanvas::DrawRun(const ORVPrintText& text, const ORVGlyphRun& run) {
    const cairo_matrix_t matrix = DeviceMatrix(text.toPage);
    if (text.fill) {
        // A glyph and its emboldening stroke overlap, which would be visible with transparent paint.
        const bool asOne = !text.fill->gradient && (run.syntheticBold || text.fill->pattern) &&
                           text.fill->colour.opacity < 255;
        if (asOne) cairo_push_group(cr_);
        ORVPrintFill fill = *text.fill;
        if (asOne) fill.colour.opacity = 255;
        SetFillSource(fill);
        cairo_set_matrix(cr_, &matrix);
        const bool fitsFont =
            run.size * ToDevice(text.toPage).Enlargement() * std::max(run.expansion, 1.0) < kLargestGlyph;
        const bool isText = fitsFont && ShowGlyphs(text, run);
        if (!isText && AddOutlines(text, run)) {
            cairo_set_fill_rule(cr_, CAIRO_FILL_RULE_WINDING);
            cairo_fill(cr_);
        }
        if (run.syntheticBold) {
            AddOutlines(text, run);
            cairo_set_line_width(cr_, ORVFontFace::kSyntheticBoldStroke * run.size);
            cairo_set_line_join(cr_, CAIRO_LINE_JOIN_ROUND);
            cairo_set_dash(cr_, nullptr, 0, 0.0);
            cairo_stroke(cr_);
        }
        if (asOne) {
            cairo_pop_group_to_source(cr_);
            cairo_paint_with_alpha(cr_, Channel(text.fill->colour.opacity));
        }
    }
    if (text.stroke) {
        SetStroke(*text.stroke, text.toPage);
        AddOutlines(text, run);
        cairo_stroke(cr_);
    }
}

int ORVCairoCanvas::DrawText(const ORVPrintText& text) {
    if (!cr_) return kDrawingFailed;
    const ORVMathAffine2D toDevice = ToDevice(text.toPage);
    if (!IsDrawable(toDevice) || IsFlat(toDevice)) return kGeneratorDone;
    const StateGuard guard(cr_);
    if (text.clip) {
        const cairo_matrix_t page = DeviceMatrix({});
        cairo_set_matrix(cr_, &page);
        cairo_new_path(cr_);
        AddPath(FitPathToRange(*text.clip, ToDevice({}), kDeviceLimit, PathUse::kFill, fitted_));
        cairo_set_fill_rule(cr_, CAIRO_FILL_RULE_WINDING);
        cairo_clip(cr_);
    }
    for (const ORVGlyphRun& run : text.layout.runs) {
        // Glyphs beyond cairo's range are far off any page.
        const bool isWithin = std::all_of(run.glyphs.begin(), run.glyphs.end(), [&](const ORVGlyph& glyph) {
            const ORVMathPoint2D p = toDevice({glyph.x, glyph.y});
            return std::fabs(p.x) < kDeviceLimit && std::fabs(p.y) < kDeviceLimit;
        });
        if (isWithin && run.size * toDevice.Enlargement() > kSmallestGlyph) DrawRun(text, run);
    }
    return Status();
}

int ORVCairoCanvas::DrawImage(const ORVPrintImage& image) {
    if (!cr_) return kDrawingFailed;
    const ORVMathAffine2D boxToDevice = ToDevice(image.toPage);
    if (!IsDrawable(boxToDevice) || IsFlat(boxToDevice)) return kGeneratorDone;
    for (const ORVMathPoint2D& corner : {ORVMathPoint2D{0.0, 0.0}, ORVMathPoint2D{1.0, 0.0},
                                         ORVMathPoint2D{0.0, 1.0}, ORVMathPoint2D{1.0, 1.0}}) {
        const ORVMathPoint2D p = boxToDevice(corner);
        if (!(std::fabs(p.x) < kDeviceLimit) || !(std::fabs(p.y) < kDeviceLimit)) return kGeneratorDone;
    }
    const CairoPattern packed = ORVShouldPack(image.image) ? ORVPackImage(image.image) : nullptr;
    cairo_surface_t* surface = packed ? nullptr : images_.Find(image.image);
    const StateGuard guard(cr_);
    const double width = packed ? image.image.GetWidth() : cairo_image_surface_get_width(surface),
                 height = packed ? image.image.GetHeight() : cairo_image_surface_get_height(surface);
    const ORVMathAffine2D toDevice = boxToDevice * ORVMathAffine2D::Scaling(1.0 / width, 1.0 / height);
    const cairo_matrix_t matrix{toDevice.m11, toDevice.m21, toDevice.m12,
                                toDevice.m22, toDevice.dx,  toDevice.dy};
    cairo_set_matrix(cr_, &matrix);
    if (packed)
        cairo_set_source(cr_, packed.get());
    else
        cairo_set_source_surface(cr_, surface, 0.0, 0.0);
    // No blending with pixels outside the image; a JPEG can also be embedded unchanged.
    cairo_pattern_set_extend(cairo_get_source(cr_), CAIRO_EXTEND_NONE);
    if (!image.isSmooth) cairo_pattern_set_filter(cairo_get_source(cr_), CAIRO_FILTER_NEAREST);
    cairo_new_path(cr_);
    cairo_rectangle(cr_, 0.0, 0.0, width, height);
    cairo_fill(cr_);
    return Status();
}
