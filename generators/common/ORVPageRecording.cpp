// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVPageRecording.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "generators/common/filter_reach.h"
#include "generators/common/generator_status.h"

namespace {

// Glyphs may extend beyond their em square. Ordinary ones stay within this distance, in em.
constexpr double kGlyphReach = 1.5;

/// How far a stroke extends from its centre line, before the shape's transformation.
double Reach(const ORVPrintStroke* stroke) {
    if (!stroke) return 0.0;
    double reach = 0.5;
    if (stroke->cap == ORVPrintStroke::Cap::kSquare) reach = std::max(reach, std::sqrt(0.5));
    if (stroke->join == ORVPrintStroke::Join::kMiter) reach = std::max(reach, 0.5 * stroke->miterLimit);
    if (stroke->join == ORVPrintStroke::Join::kMiterClip)
        reach = std::max(reach, std::sqrt(0.5) * stroke->miterLimit);
    return reach * stroke->width;
}

void Widen(ORVMathBox2D& box, double x, double y) {
    if (box.IsEmpty()) return;
    box.xMin -= x;
    box.xMax += x;
    box.yMin -= y;
    box.yMax += y;
}

/// Enlarges a box by the bounding box of a transformed circle of radius `reach`.
void WidenByPen(ORVMathBox2D& box, double reach, const ORVMathAffine2D& map) {
    if (reach > 0.0) Widen(box, reach * std::hypot(map.m11, map.m12), reach * std::hypot(map.m21, map.m22));
}

float Below(double value) {
    const auto nearest = static_cast<float>(std::clamp(value, -3e38, 3e38));
    return std::nextafter(nearest, -std::numeric_limits<float>::infinity());
}

float Above(double value) {
    const auto nearest = static_cast<float>(std::clamp(value, -3e38, 3e38));
    return std::nextafter(nearest, std::numeric_limits<float>::infinity());
}

ORVMathBox2D TextBox(const ORVTextLayout& layout) {
    ORVMathBox2D box;
    for (const ORVGlyphRun& run : layout.runs) {
        const double reach = kGlyphReach * run.size * std::max(1.0, run.expansion);
        for (const ORVGlyph& glyph : run.glyphs) {
            const double right = run.vertical ? 0.0 : glyph.advance;
            box.Add({glyph.x - reach, glyph.y - reach});
            box.Add({glyph.x + right + reach, glyph.y + reach});
        }
    }
    return box;
}

bool SamePaint(const ORVPrintColour& a, const ORVPrintColour& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue && a.opacity == b.opacity;
}

bool SameStop(const ORVPrintGradientStop& a, const ORVPrintGradientStop& b) {
    return a.offset == b.offset && SamePaint(a.colour, b.colour);
}

bool SameGradient(const ORVPrintGradient& a, const ORVPrintGradient& b) {
    return a.kind == b.kind && a.spread == b.spread && a.start == b.start && a.end == b.end &&
           a.startRadius == b.startRadius && a.endRadius == b.endRadius && a.toPage == b.toPage &&
           std::equal(a.stops.begin(), a.stops.end(), b.stops.begin(), b.stops.end(), SameStop);
}

std::uint64_t ContentHash(std::span<const ORVPrintGradientStop> stops) {
    std::uint64_t hash = stops.size();
    for (const ORVPrintGradientStop& stop : stops) {
        const ORVPrintColour& c = stop.colour;
        const std::uint64_t colour = std::uint64_t{c.red} << 24U | std::uint64_t{c.green} << 16U |
                                     std::uint64_t{c.blue} << 8U | c.opacity;
        hash = (hash ^ std::bit_cast<std::uint64_t>(stop.offset)) * 0x9E3779B97F4A7C15U;
        hash = (hash ^ (hash >> 29U) ^ colour) * 0xBF58476D1CE4E5B9U;
    }
    return hash;
}

std::uint32_t Last(std::size_t size) { return static_cast<std::uint32_t>(size - 1); }

}  // namespace

void ORVPageRecording::Box::Add(const Box& other) {
    xMin = std::min(xMin, other.xMin);
    xMax = std::max(xMax, other.xMax);
    yMin = std::min(yMin, other.yMin);
    yMax = std::max(yMax, other.yMax);
}

bool ORVPageRecording::Box::Touches(const ORVMathBox2D& box) const {
    return static_cast<double>(xMin) <= box.xMax && static_cast<double>(xMax) >= box.xMin &&
           static_cast<double>(yMin) <= box.yMax && static_cast<double>(yMax) >= box.yMin;
}

ORVPageRecording::Box ORVPageRecording::Extent(const ORVMathBox2D& box) {
    if (box.IsEmpty()) return {};
    return {Below(box.xMin), Above(box.xMax), Below(box.yMin), Above(box.yMax)};
}

ORVMathBox2D ORVPageRecording::Box::Whole() const {
    ORVMathBox2D box;
    if (IsEmpty()) return box;
    box.Add({static_cast<double>(xMin), static_cast<double>(yMin)});
    box.Add({static_cast<double>(xMax), static_cast<double>(yMax)});
    return box;
}

/// Adds a box to all open parts.
void ORVPageRecording::Spread(Body& body, const Box& box) {
    if (body.openParts.empty())
        body.box.Add(box);
    else
        body.calls[body.openParts.back()].box.Add(box);
}

void ORVPageRecording::Add(Kind kind, std::uint32_t index, const Box& box) {
    Body& body = Open();
    body.calls.push_back({kind, false, index, 0, box});
    Spread(body, box);
}

int ORVPageRecording::BeginPart(Kind kind, std::uint32_t index) {
    Body& body = Open();
    // EndPart sets the box of a part from its content.
    body.calls.push_back({kind, false, index, 0, {}});
    body.openParts.push_back(Last(body.calls.size()));
    return kGeneratorDone;
}

int ORVPageRecording::EndPart(Kind kind) {
    Body& body = Open();
    if (body.openParts.empty()) return kDrawingFailed;
    Call& part = body.calls[body.openParts.back()];
    if (EndOf(part.kind) != kind) return kDrawingFailed;
    part.end = static_cast<std::uint32_t>(body.calls.size());
    part.box = ShownBox(part);
    body.openParts.pop_back();
    const Box box = part.box;
    Add(kind, 0, box);
    return kGeneratorDone;
}

/// The visible box of a part whose content is complete.
ORVPageRecording::Box ORVPageRecording::ShownBox(const Call& part) const {
    switch (part.kind) {
        case Kind::kBeginClipPath:
            return Extent(part.box.Whole().Intersection(ClipBox(clipPaths_[part.index])));
        case Kind::kBeginLayer: return Extent(part.box.Whole().Intersection(layers_[part.index].box));
        case Kind::kBeginMask:
        case Kind::kBeginFilterInput: return {};
        case Kind::kBeginFilter:
            return Extent(ORVReachOfFilter(filters_[part.index].filter, part.box.Whole()));
        default: return part.box;
    }
}

ORVMathBox2D ORVPageRecording::ClipBox(const ClipPath& clip) const {
    ORVMathBox2D box;
    const std::span points(points_.data() + clip.path.points, clip.path.pointCount);
    for (const ORVMathPoint2D& p : points) box.Add(maps_[clip.map](p));
    return box;
}

ORVPageRecording::Path ORVPageRecording::AddPath(const ORVPrintPath& path) {
    const Path kept{verbs_.size(), points_.size(), static_cast<std::uint32_t>(path.verbs.size()),
                    static_cast<std::uint32_t>(path.points.size())};
    verbs_.insert(verbs_.end(), path.verbs.begin(), path.verbs.end());
    points_.insert(points_.end(), path.points.begin(), path.points.end());
    return kept;
}

std::span<const ORVPrintGradientStop> ORVPageRecording::AddStops(
    std::span<const ORVPrintGradientStop> stops) {
    const std::uint64_t hash = ContentHash(stops);
    const auto [first, last] = knownStops_.equal_range(hash);
    for (auto known = first; known != last; ++known) {
        const std::vector<ORVPrintGradientStop>& kept = stops_[known->second];
        if (std::equal(kept.begin(), kept.end(), stops.begin(), stops.end(), SameStop)) return kept;
    }
    stops_.emplace_back(stops.begin(), stops.end());
    knownStops_.emplace(hash, Last(stops_.size()));
    return stops_.back();
}

const ORVPrintGradient* ORVPageRecording::AddGradient(const ORVPrintGradient* gradient) {
    if (!gradient) return nullptr;
    if (gradients_.empty() || !SameGradient(gradients_.back(), *gradient)) {
        ORVPrintGradient kept = *gradient;
        kept.stops = AddStops(gradient->stops);
        gradients_.push_back(kept);
    }
    return &gradients_.back();
}

std::uint32_t ORVPageRecording::AddMap(const ORVMathAffine2D& map) {
    // Consecutive shapes usually share a transformation and a paint.
    if (maps_.empty() || maps_.back() != map) maps_.push_back(map);
    return Last(maps_.size());
}

std::uint32_t ORVPageRecording::AddFill(const ORVPrintFill* fill) {
    if (!fill) return kNone;
    if (fill->pattern) Keep(*fill->pattern);
    const ORVPrintGradient* gradient = AddGradient(fill->gradient);
    const bool isKnown = !fills_.empty() && SamePaint(fills_.back().colour, fill->colour) &&
                         fills_.back().evenOdd == fill->evenOdd && fills_.back().pattern == fill->pattern &&
                         fills_.back().gradient == gradient && fills_.back().isCrisp == fill->isCrisp &&
                         fills_.back().isExact == fill->isExact &&
                         fills_.back().patternToPage == fill->patternToPage;
    if (!isKnown) {
        fills_.push_back(*fill);
        fills_.back().gradient = gradient;
    }
    return Last(fills_.size());
}

std::uint32_t ORVPageRecording::AddStroke(const ORVPrintStroke* stroke) {
    if (!stroke) return kNone;
    const ORVPrintGradient* gradient = AddGradient(stroke->gradient);
    if (!strokes_.empty()) {
        const Stroke& last = strokes_.back();
        const double* dashes = dashes_.data() + last.dashes;
        if (SamePaint(last.stroke.colour, stroke->colour) && last.stroke.width == stroke->width &&
            last.stroke.cap == stroke->cap && last.stroke.join == stroke->join &&
            last.stroke.miterLimit == stroke->miterLimit && last.stroke.gradient == gradient &&
            last.stroke.dashOffset == stroke->dashOffset && last.stroke.isCrisp == stroke->isCrisp &&
            last.stroke.isExact == stroke->isExact &&
            std::equal(dashes, dashes + last.dashCount, stroke->dashes.begin(), stroke->dashes.end()))
            return Last(strokes_.size());
    }
    strokes_.push_back({*stroke, dashes_.size(), static_cast<std::uint32_t>(stroke->dashes.size())});
    strokes_.back().stroke.dashes = {};
    strokes_.back().stroke.gradient = gradient;
    dashes_.insert(dashes_.end(), stroke->dashes.begin(), stroke->dashes.end());
    return Last(strokes_.size());
}

std::uint32_t ORVPageRecording::AddId(std::string_view id) {
    if (id.empty()) return kNone;
    ids_.emplace_back(id);
    return Last(ids_.size());
}

void ORVPageRecording::Keep(const ORVPixelImage& image) {
    if (knownImages_.insert(&image).second) keptImages_.push_back(ORVRef<const ORVPixelImage>::Share(&image));
}

int ORVPageRecording::BeginGroup(const ORVPrintGroup& group) {
    groups_.push_back({std::string(group.id), std::string(group.description),
                       std::string(group.linkElementId), std::string(group.linkURL), group.linkShow,
                       group.isLinkTarget, group.layer != nullptr,
                       std::string(group.layer ? group.layer->label : std::string_view()),
                       group.layer && group.layer->isShown, group.layer && group.layer->isLocked});
    return BeginPart(Kind::kBeginGroup, Last(groups_.size()));
}

int ORVPageRecording::EndGroup() { return EndPart(Kind::kEndGroup); }

int ORVPageRecording::BeginClip(const ORVMathBox2D& box) {
    clips_.push_back(box);
    Add(Kind::kBeginClip, Last(clips_.size()), {});
    return kGeneratorDone;
}

int ORVPageRecording::EndClip() {
    Add(Kind::kEndClip, 0, {});
    return kGeneratorDone;
}

int ORVPageRecording::BeginClipPath(const ORVPrintClipPath& clip) {
    clipPaths_.push_back({AddPath(clip.path), AddMap(clip.toPage), clip.evenOdd});
    return BeginPart(Kind::kBeginClipPath, Last(clipPaths_.size()));
}

int ORVPageRecording::EndClipPath() { return EndPart(Kind::kEndClipPath); }

int ORVPageRecording::BeginLayer(const ORVPrintLayer& layer) {
    layers_.push_back(layer);
    return BeginPart(Kind::kBeginLayer, Last(layers_.size()));
}

int ORVPageRecording::EndLayer() { return EndPart(Kind::kEndLayer); }

int ORVPageRecording::BeginMask(const ORVPrintMask& mask) {
    masks_.push_back(mask);
    return BeginPart(Kind::kBeginMask, Last(masks_.size()));
}

int ORVPageRecording::EndMask() { return EndPart(Kind::kEndMask); }

int ORVPageRecording::BeginFilter(const ORVPrintFilter& filter) {
    filters_.push_back({filter, {filter.steps.begin(), filter.steps.end()}});
    filters_.back().filter.steps = filters_.back().steps;
    return BeginPart(Kind::kBeginFilter, Last(filters_.size()));
}

int ORVPageRecording::EndFilter() { return EndPart(Kind::kEndFilter); }

int ORVPageRecording::BeginFilterInput() { return BeginPart(Kind::kBeginFilterInput, 0); }

int ORVPageRecording::EndFilterInput() { return EndPart(Kind::kEndFilterInput); }

int ORVPageRecording::BeginSymbol(const ORVPrintSymbol& symbol) {
    const auto known = symbols_.find(symbol.key);
    const std::uint32_t map = AddMap(symbol.toPage);
    if (known != symbols_.end()) {
        placements_.push_back({known->second, map});
        const ORVMathBox2D extent = bodies_[known->second].box.Whole();
        Add(Kind::kSymbol, Last(placements_.size()), Extent(ORVCallMapper::Map(symbol.toPage, extent)));
        return ORVPrintGenerator::kSymbolKnown;
    }
    bodies_.emplace_back();
    bodies_.back().key = symbol.key;
    openBodies_.push_back(bodies_.size() - 1);
    openPlacements_.push_back(map);
    return ORVPrintGenerator::kDrawSymbol;
}

int ORVPageRecording::EndSymbol() {
    if (openPlacements_.empty()) return kDrawingFailed;
    const std::size_t body = openBodies_.back();
    const ORVPrintSymbol symbol{bodies_[body].key, maps_[openPlacements_.back()]};
    openBodies_.pop_back();
    openPlacements_.pop_back();
    symbols_.emplace(symbol.key, static_cast<std::uint32_t>(body));
    return BeginSymbol(symbol) == ORVPrintGenerator::kSymbolKnown ? kGeneratorDone : kDrawingFailed;
}

ORVMathBox2D ORVPageRecording::BoxOf(const ORVPrintShape& shape) {
    ORVMathBox2D box;
    for (const ORVMathPoint2D& p : shape.path.points) box.Add(shape.toPage(p));
    WidenByPen(box, Reach(shape.stroke), shape.toPage);
    return box;
}

ORVMathBox2D ORVPageRecording::BoxOf(const ORVPrintText& text) {
    ORVMathBox2D box = ORVCallMapper::Map(text.toPage, TextBox(text.layout));
    WidenByPen(box, Reach(text.stroke), text.toPage);
    return box;
}

ORVMathBox2D ORVPageRecording::BoxOf(const ORVPrintImage& image) {
    ORVMathBox2D square;
    square.Add({0.0, 0.0});
    square.Add({1.0, 1.0});
    return ORVCallMapper::Map(image.toPage, square);
}

int ORVPageRecording::DrawShape(const ORVPrintShape& shape) {
    shapes_.push_back({AddPath(shape.path), AddMap(shape.toPage), AddFill(shape.fill),
                       AddStroke(shape.stroke), AddId(shape.id)});
    Add(Kind::kShape, Last(shapes_.size()), Extent(BoxOf(shape)));
    return kGeneratorDone;
}

int ORVPageRecording::DrawText(const ORVPrintText& text) {
    for (const ORVGlyphRun& run : text.layout.runs) keptFaces_.Keep(*run.face);
    texts_.push_back({text.layout, std::string(text.text), AddMap(text.toPage), AddFill(text.fill),
                      AddStroke(text.stroke), AddId(text.id), text.clip != nullptr,
                      text.clip ? *text.clip : ORVPrintPath()});
    Add(Kind::kText, Last(texts_.size()), Extent(BoxOf(text)));
    return kGeneratorDone;
}

int ORVPageRecording::DrawImage(const ORVPrintImage& image) {
    Keep(image.image);
    images_.push_back({&image.image, AddMap(image.toPage), AddId(image.id), image.isSmooth});
    Add(Kind::kImage, Last(images_.size()), Extent(BoxOf(image)));
    return kGeneratorDone;
}
