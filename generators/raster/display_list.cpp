#include "generators/raster/display_list.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "generators/common/glyph_outlines.h"
#include "generators/common/map_measures.h"
#include "generators/raster/curve_flattening.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/fonts/glyph_picture.h"

namespace {

// Half of what the coverage buffer takes, which leaves room for pens.
constexpr double kDeviceLimit = CoverageBuffer::kFarthest / 2.0;
// Glyphs of more pixels an em are drawn as any other outline, which need not be near.
constexpr double kLargestGlyph = 20'000.0;
// Smaller ones cannot be seen.
constexpr double kSmallestGlyph = 1e-5;
// An operation of more verbs is looked at in pieces of so many.
constexpr std::uint32_t kVerbsOfPiece = 64;
constexpr std::uint32_t kGlyphsOfPiece = 32;
constexpr std::size_t kArenaBlock = std::size_t{1} << 18U;
// What is larger gets memory of its own size, so that it can go where the model's points were before.
constexpr std::size_t kLargeInArena = std::size_t{1} << 12U;
// Pens are looked for among the last ones.
constexpr std::size_t kPensToCompare = 8;

bool IsWithinLimit(const ORVMathPoint2D& p) {
    return std::fabs(p.x) <= kDeviceLimit && std::fabs(p.y) <= kDeviceLimit;
}

/// The pixel that a coordinate lies in, as far as that matters for anything.
int PixelOf(double value) {
    return static_cast<int>(
        std::floor(value > -kDeviceLimit * 2 ? std::min(value, kDeviceLimit * 2) : -kDeviceLimit * 2));
}

bool IsSameMap(const ORVMathAffine2D& a, const ORVMathAffine2D& b) {
    return a.m11 == b.m11 && a.m12 == b.m12 && a.m21 == b.m21 && a.m22 == b.m22 && a.dx == b.dx &&
           a.dy == b.dy;
}

bool IsGreyColour(const ORVPrintColour& colour) {
    return colour.red == colour.green && colour.green == colour.blue;
}

RasterPoint ShortFrom(const ORVMathPoint2D& origin, const ORVMathPoint2D& p) {
    return {static_cast<float>(p.x - origin.x), static_cast<float>(p.y - origin.y)};
}

/// Flattens the outline of a glyph.
class GlyphFlattening final : public ORVGlyphOutlineSink {
public:
    GlyphFlattening(RasterGlyph& glyph, const ORVMathAffine2D& map) : glyph_(glyph), map_(map) {}

    void MoveTo(double x, double y) override {
        Close();
        current_ = start_ = map_({x, y});
        Add(current_, false);
    }
    void LineTo(double x, double y) override { Add(current_ = map_({x, y}), false); }
    void QuadTo(double controlX, double controlY, double x, double y) override {
        const ORVMathPoint2D control = map_({controlX, controlY}), end = map_({x, y});
        AddCurve({current_.x + (control.x - current_.x) * 2.0 / 3.0,
                  current_.y + (control.y - current_.y) * 2.0 / 3.0},
                 {end.x + (control.x - end.x) * 2.0 / 3.0, end.y + (control.y - end.y) * 2.0 / 3.0}, end);
    }
    void CubicTo(double control1X, double control1Y, double control2X, double control2Y, double x,
                 double y) override {
        AddCurve(map_({control1X, control1Y}), map_({control2X, control2Y}), map_({x, y}));
    }
    void Close() override {
        const auto end = static_cast<std::uint32_t>(glyph_.points.size());
        if (end - begin_ > 1) glyph_.contours.push_back({begin_, end - begin_});
        begin_ = end;
    }

private:
    void AddCurve(const ORVMathPoint2D& control1, const ORVMathPoint2D& control2, const ORVMathPoint2D& end) {
        const int pieces = ORVPiecesOfCubic(current_, control1, control2, end);
        int i = 0;
        ORVFlattenCubic(current_, control1, control2, end, pieces,
                        [&](const ORVMathPoint2D& p) { Add(p, ++i < pieces); });
        current_ = end;
    }
    void Add(const ORVMathPoint2D& p, bool isSmooth) {
        glyph_.points.push_back({static_cast<float>(p.x), static_cast<float>(p.y)});
        glyph_.smooth.push_back(isSmooth ? 1 : 0);
    }

    RasterGlyph& glyph_;
    const ORVMathAffine2D map_;
    ORVMathPoint2D current_, start_;
    std::uint32_t begin_ = 0;
};

void MeasureGlyph(RasterGlyph& glyph) {
    double area = 0.0;
    for (const RasterGlyph::Contour& contour : glyph.contours)
        for (std::uint32_t i = 0; i < contour.count; ++i) {
            const RasterPoint& a = glyph.points[contour.first + i];
            const RasterPoint& b = glyph.points[contour.first + (i + 1) % contour.count];
            area += static_cast<double>(a.x) * static_cast<double>(b.y) -
                    static_cast<double>(b.x) * static_cast<double>(a.y);
        }
    glyph.clockwise = area > 0.0;
    glyph.left = glyph.top = std::numeric_limits<float>::max();
    glyph.right = glyph.bottom = std::numeric_limits<float>::lowest();
    for (const RasterPoint& p : glyph.points) {
        glyph.left = std::min(glyph.left, p.x);
        glyph.right = std::max(glyph.right, p.x);
        glyph.top = std::min(glyph.top, p.y);
        glyph.bottom = std::max(glyph.bottom, p.y);
    }
}

}  // namespace

void* RasterArena::Take(std::size_t bytes) {
    bytes = (bytes + kAlignment - 1) / kAlignment * kAlignment;
    if (bytes > left_ || bytes >= kLargeInArena) {
        const std::size_t size = bytes >= kLargeInArena ? bytes : kArenaBlock;
        std::unique_ptr<std::byte[]> block(new std::byte[size]);
        blocks_.push_back(std::move(block));
        if (size == bytes) return blocks_.back().get();  // the block that was begun goes on
        next_ = blocks_.back().get();
        left_ = size;
    }
    std::byte* taken = next_;
    next_ += bytes;
    left_ -= bytes;
    return taken;
}

void RasterArena::Clear() {
    blocks_.clear();
    left_ = 0;
    next_ = nullptr;
}

std::size_t DisplayList::GlyphMapHash::operator()(const GlyphMap& map) const {
    std::size_t hash = std::hash<const ORVFontFace*>()(map.face);
    for (const double value : {map.m11, map.m12, map.m21, map.m22})
        hash = hash * 1'000'003U ^ std::hash<double>()(value);
    return hash;
}

void DisplayList::Begin(int width, int height, double scale, double thinnest, bool smooths) {
    Clear();
    width_ = width;
    height_ = height;
    scale_ = scale;
    thinnest_ = thinnest;
    smooths_ = smooths;
    clips_.push_back({0.0, 0.0, static_cast<double>(width), static_cast<double>(height), nullptr});
    openClips_.push_back(0);
}

void DisplayList::Clear() {
    // Fresh vectors: a page's memory is not kept for the next one, which may need it elsewhere.
    operations_ = {};
    pieces_ = {};
    clips_ = {};
    openClips_ = {};
    pens_.clear();
    pictures_.clear();
    glyphs_.clear();
    glyphMaps_.clear();
    glyphIndex_.clear();
    arena_.Clear();
    isGrey_ = true;
}

ORVMathAffine2D DisplayList::ToDevice(const ORVMathAffine2D& toPage) const {
    return ORVMathAffine2D::Scaling(scale_, scale_) * toPage;
}

std::uint32_t DisplayList::AddClip(RasterClip clip) {
    const RasterClip& outer = clips_[openClips_.back()];
    clip.left = std::max(clip.left, outer.left);
    clip.top = std::max(clip.top, outer.top);
    clip.right = std::min(clip.right, outer.right);
    clip.bottom = std::min(clip.bottom, outer.bottom);
    clips_.push_back(clip);
    return static_cast<std::uint32_t>(clips_.size() - 1);
}

void DisplayList::BeginClip(const ORVMathBox2D& box) {
    // An empty box has its borders the wrong way round, which nothing lies between.
    openClips_.push_back(
        AddClip({box.xMin * scale_, box.yMin * scale_, box.xMax * scale_, box.yMax * scale_, nullptr}));
}

void DisplayList::EndClip() {
    if (openClips_.size() > 1) openClips_.pop_back();
}

RasterOperation DisplayList::NewOperation(const ORVPrintColour& colour) {
    RasterOperation operation;
    operation.colour = colour;
    operation.clip = openClips_.back();
    operation.smooths = smooths_;
    return operation;
}

// ---- Outlines ---------------------------------------------------------------------------------------------

bool DisplayList::CollectContours(const ORVPrintPath& path, const ORVMathAffine2D& toDevice) {
    drafts_.clear();
    draftPoints_.clear();
    draftVerbs_.clear();
    auto point = path.points.begin();
    bool isFar = false;
    bool isOpen = false, hasVerb = false;
    ORVMathPoint2D start, origin;
    const auto next = [&] {
        const ORVMathPoint2D p = toDevice(*point++);
        isFar = isFar || !IsWithinLimit(p);
        return p;
    };
    // Points are kept as short numbers: what these cannot tell apart counts as one point.
    const auto equal = [&](const ORVMathPoint2D& a, const ORVMathPoint2D& b) {
        return ShortFrom(origin, a) == ShortFrom(origin, b);
    };
    const auto begin = [&](const ORVMathPoint2D& p) {
        if (draftPoints_.empty()) origin = {std::floor(p.x), std::floor(p.y)};
        drafts_.push_back({draftPoints_.size(), draftVerbs_.size(), false});
        draftPoints_.push_back(start = p);
        isOpen = true;
        hasVerb = false;
    };
    // A contour that only moves shows nothing, whatever its caps.
    const auto end = [&] {
        if (isOpen && !hasVerb) {
            draftPoints_.pop_back();
            drafts_.pop_back();
        }
        isOpen = false;
    };
    const auto line = [&](const ORVMathPoint2D& p) {
        if (equal(draftPoints_.back(), p)) return;
        draftPoints_.push_back(p);
        draftVerbs_.push_back(RasterContour::Verb::kLine);
    };
    for (const ORVPrintPath::Verb verb : path.verbs) {
        if (verb == ORVPrintPath::Verb::kMove) {
            end();
            begin(next());
            continue;
        }
        if (!isOpen) begin(start);
        hasVerb = true;
        switch (verb) {
            case ORVPrintPath::Verb::kLine: line(next()); break;
            case ORVPrintPath::Verb::kCubic: {
                const ORVMathPoint2D from = draftPoints_.back();
                const ORVMathPoint2D control1 = next(), control2 = next(), to = next();
                if (equal(control1, from) && equal(control2, from) && equal(to, from)) break;
                draftPoints_.insert(draftPoints_.end(), {control1, control2, to});
                draftVerbs_.push_back(RasterContour::Verb::kCubic);
                break;
            }
            default:
                line(start);
                drafts_.back().closed = true;
                end();
                break;
        }
    }
    end();
    return !isFar;
}

RasterGeometry DisplayList::KeepContours(Extent& extent) {
    RasterGeometry geometry;
    const ORVMathPoint2D& first = draftPoints_.front();
    const ORVMathPoint2D origin{std::floor(first.x), std::floor(first.y)};
    geometry.originX = PixelOf(first.x);
    geometry.originY = PixelOf(first.y);
    auto* points = arena_.Make<RasterPoint>(draftPoints_.size());
    auto* verbs = arena_.Make<RasterContour::Verb>(draftVerbs_.size());
    auto* contours = arena_.Make<RasterContour>(drafts_.size());
    extent = {first.x, first.y, first.x, first.y};
    for (std::size_t i = 0; i < draftPoints_.size(); ++i) {
        const ORVMathPoint2D& p = draftPoints_[i];
        extent.left = std::min(extent.left, p.x);
        extent.right = std::max(extent.right, p.x);
        extent.top = std::min(extent.top, p.y);
        extent.bottom = std::max(extent.bottom, p.y);
        new (points + i) RasterPoint(ShortFrom(origin, p));
    }
    std::copy(draftVerbs_.begin(), draftVerbs_.end(), verbs);
    for (std::size_t i = 0; i < drafts_.size(); ++i) {
        const std::size_t end = i + 1 < drafts_.size() ? drafts_[i + 1].firstVerb : draftVerbs_.size();
        new (contours + i)
            RasterContour{points + drafts_[i].firstPoint, verbs + drafts_[i].firstVerb,
                          static_cast<std::uint32_t>(end - drafts_[i].firstVerb), drafts_[i].closed};
    }
    geometry.contours = contours;
    geometry.contourCount = static_cast<std::uint32_t>(drafts_.size());
    return geometry;
}

bool DisplayList::MakeGeometry(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, PathUse use,
                               RasterGeometry& geometry, Extent& extent) {
    if (!CollectContours(path, toDevice))
        CollectContours(FitPathToRange(path, toDevice, kDeviceLimit, use, fitted_), toDevice);
    if (draftPoints_.empty()) return false;
    // What cannot be seen need not be kept; room for pens is added where there is one.
    geometry = KeepContours(extent);
    return true;
}

void DisplayList::AddPath(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, const ORVPrintFill* fill,
                          const ORVPrintStroke* stroke) {
    RasterGeometry geometry;
    Extent extent;
    const bool isNear = CollectContours(path, toDevice);
    if (isNear) {
        if (draftPoints_.empty()) return;
        geometry = KeepContours(extent);
    }
    if (fill && (isNear || MakeGeometry(path, toDevice, PathUse::kFill, geometry, extent))) {
        RasterOperation operation = NewOperation(fill->colour);
        operation.geometry = geometry;
        operation.evenOdd = fill->evenOdd;
        if (fill->pattern)
            operation.picture = KeepPicture(*fill->pattern, ToDevice(fill->patternToPage), true);
        AddOperation(operation, extent);
    }
    if (stroke && (isNear || MakeGeometry(path, toDevice, PathUse::kStroke, geometry, extent))) {
        RasterOperation operation = NewOperation(stroke->colour);
        operation.geometry = geometry;
        operation.fills = false;
        operation.pen = KeepPen(*stroke, toDevice);
        AddOperation(operation, extent);
    }
}

void DisplayList::AddOperation(const RasterOperation& operation, const Extent& extent) {
    const RasterClip& clip = clips_[operation.clip];
    const double reach = operation.pen ? operation.pen->reach : 0.0;
    const int left = std::max(PixelOf(extent.left - reach), PixelOf(clip.left));
    const int right = std::min(PixelOf(extent.right + reach) + 1, PixelOf(std::ceil(clip.right)));
    const int firstRow = PixelOf(std::max(clip.top, 0.0)), lastRow = PixelOf(std::ceil(clip.bottom)) - 1;
    if (left >= right || PixelOf(extent.top - reach) > lastRow || PixelOf(extent.bottom + reach) < firstRow)
        return;
    if (!IsGreyColour(operation.colour) || operation.picture) isGrey_ = false;
    RasterOperation kept = operation;
    kept.left = std::max(left, 0);
    kept.right = right;
    kept.clipped = operation.clip != 0 &&
                   (clip.outline || extent.left - reach < clip.left || extent.right + reach > clip.right ||
                    extent.top - reach < clip.top || extent.bottom + reach > clip.bottom);
    const std::size_t before = pieces_.GetSize();
    AddPiecesOf(operation, extent, firstRow, lastRow);
    if (pieces_.GetSize() > before) operations_.Append(kept);
}

void DisplayList::AddPiecesOf(const RasterOperation& operation, const Extent& extent, int firstRow,
                              int lastRow) {
    const double reach = operation.pen ? operation.pen->reach : 0.0;
    RasterPiece piece;
    piece.operation = static_cast<std::uint32_t>(operations_.GetSize());
    const auto add = [&](double top, double bottom) {
        piece.firstRow = std::max(PixelOf(top - reach), firstRow);
        piece.lastRow = std::min(PixelOf(bottom + reach), lastRow);
        if (piece.firstRow <= piece.lastRow) pieces_.Append(piece);
    };
    const RasterGeometry& geometry = operation.geometry;
    std::size_t verbs = 0;
    for (std::uint32_t i = 0; i < geometry.contourCount && verbs <= kVerbsOfPiece; ++i)
        verbs += geometry.contours[i].verbCount + 1;
    // The dashes of a contour depend on all of it.
    if (verbs <= kVerbsOfPiece ||
        (operation.pen && operation.pen->IsDashed() && geometry.contourCount == 1)) {
        add(extent.top, extent.bottom);
        return;
    }
    for (piece.contour = 0; piece.contour < geometry.contourCount; ++piece.contour) {
        const RasterContour& contour = geometry.contours[piece.contour];
        const std::uint32_t most =
            operation.pen && operation.pen->IsDashed() ? RasterPiece::kAll : kVerbsOfPiece;
        piece.firstVerb = piece.firstPoint = 0;
        do {
            piece.verbCount = std::min(most, contour.verbCount - piece.firstVerb);
            const RasterPoint* point = contour.points + piece.firstPoint;
            const auto first = piece.firstPoint;
            for (std::uint32_t i = 0; i < piece.verbCount; ++i)
                piece.firstPoint +=
                    contour.verbs[piece.firstVerb + i] == RasterContour::Verb::kCubic ? 3U : 1U;
            const RasterPoint* last = contour.points + piece.firstPoint;
            float top = point->y, bottom = point->y;
            for (; point <= last; ++point) {
                top = std::min(top, point->y);
                bottom = std::max(bottom, point->y);
            }
            const bool isLast = piece.firstVerb + piece.verbCount == contour.verbCount;
            // An inside is closed by a last edge.
            if (isLast && operation.fills) {
                top = std::min(top, contour.points->y);
                bottom = std::max(bottom, contour.points->y);
            }
            const std::uint32_t next = piece.firstPoint;
            piece.firstPoint = first;
            add(geometry.originY + static_cast<double>(top), geometry.originY + static_cast<double>(bottom));
            piece.firstVerb += piece.verbCount;
            piece.firstPoint = next;
        } while (piece.firstVerb < contour.verbCount);
    }
}

const StrokePen* DisplayList::KeepPen(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice) {
    const ORVMathAffine2D linear{toDevice.m11, toDevice.m12, toDevice.m21, toDevice.m22, 0.0, 0.0};
    const auto same = [&](const KeptPen& kept) {
        return kept.stroke.width == stroke.width && kept.stroke.cap == stroke.cap &&
               kept.stroke.join == stroke.join && kept.stroke.miterLimit == stroke.miterLimit &&
               IsSameMap(kept.map, linear) &&
               std::equal(kept.dashes.begin(), kept.dashes.end(), stroke.dashes.begin(), stroke.dashes.end());
    };
    const auto end = pens_.size() > kPensToCompare ? pens_.rbegin() + kPensToCompare : pens_.rend();
    if (const auto found = std::find_if(pens_.rbegin(), end, same); found != end) return &found->pen;
    KeptPen& kept = pens_.emplace_back();
    kept.stroke = stroke;
    kept.dashes.assign(stroke.dashes.begin(), stroke.dashes.end());
    kept.stroke.dashes = kept.dashes;
    kept.map = linear;
    kept.pen = ORVMakePen(stroke, linear, thinnest_, kept.dashEnds);
    return &kept.pen;
}

const RasterPicture* DisplayList::KeepPicture(const ORVPixelImage& image, const ORVMathAffine2D& toDevice,
                                              bool repeats) {
    // Patterns often paint one shape after the other.
    if (repeats && !pictures_.empty() && pictures_.back().repeats && pictures_.back().image.get() == &image &&
        IsSameMap(pictures_.back().toDevice, toDevice))
        return &pictures_.back();
    pictures_.push_back({ORVRef<const ORVPixelImage>::Share(&image), toDevice, repeats});
    return &pictures_.back();
}

void DisplayList::AddShape(const ORVPrintShape& shape) {
    const ORVMathAffine2D toDevice = ToDevice(shape.toPage);
    if (IsDrawable(toDevice)) AddPath(shape.path, toDevice, shape.fill, shape.stroke);
}

void DisplayList::AddImage(const ORVPrintImage& image) {
    const ORVMathAffine2D toDevice = ToDevice(image.toPage);
    if (!IsDrawable(toDevice)) return;
    outlines_.Clear();
    outlines_.MoveTo({0.0, 0.0});
    outlines_.LineTo({1.0, 0.0});
    outlines_.LineTo({1.0, 1.0});
    outlines_.LineTo({0.0, 1.0});
    outlines_.Close();
    RasterOperation operation = NewOperation({});
    Extent extent;
    if (!MakeGeometry(outlines_, toDevice, PathUse::kFill, operation.geometry, extent)) return;
    operation.picture = KeepPicture(
        image.image,
        toDevice * ORVMathAffine2D::Scaling(1.0 / image.image.GetWidth(), 1.0 / image.image.GetHeight()),
        false);
    AddOperation(operation, extent);
}

// ---- Text -------------------------------------------------------------------------------------------------

std::uint32_t DisplayList::ClipText(const ORVPrintPath& path) {
    RasterClip clip;
    Extent extent;
    RasterGeometry geometry;
    if (!MakeGeometry(path, ToDevice({}), PathUse::kFill, geometry, extent)) return AddClip(clip);
    clip = {extent.left, extent.top, extent.right, extent.bottom, nullptr};
    const auto isLevel = [](const ORVMathPoint2D& a, const ORVMathPoint2D& b) {
        return a.x == b.x || a.y == b.y;
    };
    const auto& p = draftPoints_;
    const bool isBox = geometry.contourCount == 1 && p.size() == 5 && draftVerbs_.size() == 4 &&
                       isLevel(p[0], p[1]) && isLevel(p[1], p[2]) && isLevel(p[2], p[3]) &&
                       isLevel(p[3], p[0]);
    if (!isBox) {
        auto* outline = arena_.Make<RasterGeometry>(1);
        clip.outline = new (outline) RasterGeometry(geometry);
    }
    return AddClip(clip);
}

const RasterGlyph* DisplayList::FindGlyph(const ORVGlyphRun& run, std::uint32_t index, const GlyphMap& map) {
    const auto [entry, isNewMap] = glyphMaps_.try_emplace(map, static_cast<std::uint32_t>(glyphMaps_.size()));
    const std::uint64_t key = std::uint64_t{entry->second} << 32U | index;
    const auto [found, isNew] = glyphIndex_.try_emplace(key, nullptr);
    if (!isNew) return found->second;
    RasterGlyph& glyph = glyphs_.emplace_back();
    GlyphFlattening flattening(glyph, {map.m11, map.m12, map.m21, map.m22, 0.0, 0.0});
    run.face->DrawGlyph(index, 1.0, flattening);
    flattening.Close();
    MeasureGlyph(glyph);
    return found->second = &glyph;
}

void DisplayList::AddText(const ORVPrintText& text) {
    const ORVMathAffine2D toDevice = ToDevice(text.toPage);
    if (!IsDrawable(toDevice)) return;
    const std::uint32_t clip = text.clip ? ClipText(*text.clip) : openClips_.back();
    for (const ORVGlyphRun& run : text.layout.runs) AddRun(text, run, toDevice, clip);
}

void DisplayList::AddRun(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& toDevice,
                         std::uint32_t clip) {
    const double pixels = run.size * Enlargement(toDevice) * std::max(run.expansion, 1.0);
    if (!(pixels > kSmallestGlyph) || run.glyphs.empty()) return;

    ORVPrintStroke bold;
    bold.width = ORVFontFace::kSyntheticBoldStroke * run.size;
    bold.join = ORVPrintStroke::Join::kRound;
    openClips_.push_back(clip);
    if (pixels > kLargestGlyph) {
        ORVCollectOutlines(run, outlines_);
        if (text.fill && run.syntheticBold) bold.colour = text.fill->colour;
        AddPath(outlines_, toDevice, text.fill, text.fill && run.syntheticBold ? &bold : nullptr);
        AddPath(outlines_, toDevice, nullptr, text.stroke);
        openClips_.pop_back();
        return;
    }

    const double across = run.size * run.expansion;
    const GlyphMap map{run.face, toDevice.m11 * across, toDevice.m12 * run.size, toDevice.m21 * across,
                       toDevice.m22 * run.size};
    RasterOperation operation = NewOperation({});
    places_.clear();
    bool hasPictures = false;
    for (const ORVGlyph& glyph : run.glyphs) {
        const ORVMathPoint2D p = toDevice({glyph.x, glyph.y});
        if (!IsWithinLimit(p)) continue;
        const RasterGlyph* outline = FindGlyph(run, glyph.index, map);
        if (outline->IsEmpty()) {
            hasPictures = true;
            continue;
        }
        if (places_.empty()) {
            operation.geometry.originX = PixelOf(p.x);
            operation.geometry.originY = PixelOf(p.y);
        }
        places_.push_back({outline, static_cast<float>(p.x - operation.geometry.originX),
                           static_cast<float>(p.y - operation.geometry.originY)});
    }
    if (text.fill && hasPictures) AddGlyphPictures(run, toDevice, *text.fill, clip);
    if (!places_.empty()) {
        auto* kept = arena_.Make<RasterGlyphPlace>(places_.size());
        std::uninitialized_copy(places_.begin(), places_.end(), kept);
        operation.glyphs = kept;
        if (text.fill) {
            operation.colour = text.fill->colour;
            if (text.fill->pattern)
                operation.picture =
                    KeepPicture(*text.fill->pattern, ToDevice(text.fill->patternToPage), true);
            if (run.syntheticBold) operation.pen = KeepPen(bold, toDevice);
            AddGlyphs(operation);
        }
        if (text.stroke) {
            operation.colour = text.stroke->colour;
            operation.picture = nullptr;
            operation.fills = false;
            operation.pen = KeepPen(*text.stroke, toDevice);
            AddGlyphs(operation);
        }
    }
    openClips_.pop_back();
}

void DisplayList::AddGlyphs(RasterOperation operation) {
    const RasterClip& clip = clips_[operation.clip];
    const double reach = operation.pen ? operation.pen->reach : 0.0;
    const int firstRow = PixelOf(std::max(clip.top, 0.0)), lastRow = PixelOf(std::ceil(clip.bottom)) - 1;
    const std::size_t before = pieces_.GetSize();
    RasterPiece piece;
    piece.operation = static_cast<std::uint32_t>(operations_.GetSize());
    Extent all{1e30, 1e30, -1e30, -1e30};
    for (std::size_t i = 0; i < places_.size(); i += kGlyphsOfPiece) {
        piece.firstPoint = static_cast<std::uint32_t>(i);
        piece.verbCount =
            static_cast<std::uint32_t>(std::min<std::size_t>(kGlyphsOfPiece, places_.size() - i));
        double top = 1e30, bottom = -1e30;
        for (std::size_t k = i; k < i + piece.verbCount; ++k) {
            const RasterGlyphPlace& place = places_[k];
            const double x = operation.geometry.originX + static_cast<double>(place.x);
            const double y = operation.geometry.originY + static_cast<double>(place.y);
            top = std::min(top, y + static_cast<double>(place.glyph->top));
            bottom = std::max(bottom, y + static_cast<double>(place.glyph->bottom));
            all.left = std::min(all.left, x + static_cast<double>(place.glyph->left));
            all.right = std::max(all.right, x + static_cast<double>(place.glyph->right));
        }
        all.top = std::min(all.top, top);
        all.bottom = std::max(all.bottom, bottom);
        piece.firstRow = std::max(PixelOf(top - reach), firstRow);
        piece.lastRow = std::min(PixelOf(bottom + reach), lastRow);
        if (piece.firstRow <= piece.lastRow) pieces_.Append(piece);
    }
    operation.clipped = operation.clip != 0 &&
                        (clip.outline || all.left - reach < clip.left || all.right + reach > clip.right ||
                         all.top - reach < clip.top || all.bottom + reach > clip.bottom);
    operation.left = std::max({PixelOf(all.left - reach), PixelOf(clip.left), 0});
    operation.right = std::min(PixelOf(all.right + reach) + 1, PixelOf(std::ceil(clip.right)));
    if (operation.left >= operation.right) pieces_.Truncate(before);
    if (pieces_.GetSize() == before) return;
    if (!IsGreyColour(operation.colour) || operation.picture) isGrey_ = false;
    operations_.Append(operation);
}

void DisplayList::AddGlyphPictures(const ORVGlyphRun& run, const ORVMathAffine2D& toDevice,
                                   const ORVPrintFill& fill, std::uint32_t /*clip*/) {
    const double pixelsPerEm = run.size * Enlargement(toDevice);
    for (const ORVGlyph& glyph : run.glyphs) {
        const ORVGlyphPicture picture = ORVMakeGlyphPicture(
            *run.face, glyph.index, pixelsPerEm, {fill.colour.red, fill.colour.green, fill.colour.blue});
        if (!picture.image) continue;
        const double across = run.size * run.expansion;
        const ORVMathAffine2D box{picture.width * across,
                                  0.0,
                                  0.0,
                                  -picture.height * run.size,
                                  glyph.x + picture.left * across,
                                  glyph.y + picture.top * run.size};
        outlines_.Clear();
        outlines_.MoveTo({0.0, 0.0});
        outlines_.LineTo({1.0, 0.0});
        outlines_.LineTo({1.0, 1.0});
        outlines_.LineTo({0.0, 1.0});
        outlines_.Close();
        const ORVMathAffine2D boxToDevice = toDevice * box;
        RasterOperation operation = NewOperation({0, 0, 0, fill.colour.opacity});
        Extent extent;
        if (!IsDrawable(boxToDevice) ||
            !MakeGeometry(outlines_, boxToDevice, PathUse::kFill, operation.geometry, extent))
            continue;
        operation.picture =
            KeepPicture(*picture.image,
                        boxToDevice * ORVMathAffine2D::Scaling(1.0 / picture.image->GetWidth(),
                                                               1.0 / picture.image->GetHeight()),
                        false);
        AddOperation(operation, extent);
    }
}
