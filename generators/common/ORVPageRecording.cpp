#include "generators/common/ORVPageRecording.h"

#include <algorithm>
#include <cmath>

#include "generators/common/generator_status.h"

namespace {

// A glyph may reach out of its cell; no usual one reaches farther than this, in em.
constexpr double kGlyphReach = 1.5;

/// How far a pen reaches from the line it draws, before the shape's map.
double Reach(const ORVPrintStroke* stroke) {
    if (!stroke) return 0.0;
    double reach = 0.5;
    if (stroke->cap == ORVPrintStroke::Cap::kSquare) reach = std::max(reach, std::sqrt(0.5));
    if (stroke->join == ORVPrintStroke::Join::kMiter) reach = std::max(reach, 0.5 * stroke->miterLimit);
    return reach * stroke->width;
}

void Widen(ORVMathBox2D& box, double x, double y) {
    if (box.IsEmpty()) return;
    box.xMin -= x;
    box.xMax += x;
    box.yMin -= y;
    box.yMax += y;
}

/// Around a circle's image under the map.
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

bool SameMap(const ORVMathAffine2D& a, const ORVMathAffine2D& b) {
    return a.m11 == b.m11 && a.m12 == b.m12 && a.m21 == b.m21 && a.m22 == b.m22 && a.dx == b.dx &&
           a.dy == b.dy;
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

void ORVPageRecording::Add(Kind kind, std::uint32_t index, const Box& box) {
    Body& body = Open();
    body.calls.push_back({kind, false, index, 0, box});
    body.box.Add(box);
    if (!body.openGroups.empty()) body.calls[body.openGroups.back()].box.Add(box);
}

std::uint32_t ORVPageRecording::AddMap(const ORVMathAffine2D& map) {
    // Shapes that follow each other mostly have one map, and one paint.
    if (maps_.empty() || !SameMap(maps_.back(), map)) maps_.push_back(map);
    return Last(maps_.size());
}

std::uint32_t ORVPageRecording::AddFill(const ORVPrintFill* fill) {
    if (!fill) return kNone;
    if (fill->pattern) Keep(*fill->pattern);
    const bool isKnown = !fills_.empty() && SamePaint(fills_.back().colour, fill->colour) &&
                         fills_.back().evenOdd == fill->evenOdd && fills_.back().pattern == fill->pattern &&
                         SameMap(fills_.back().patternToPage, fill->patternToPage);
    if (!isKnown) fills_.push_back(*fill);
    return Last(fills_.size());
}

std::uint32_t ORVPageRecording::AddStroke(const ORVPrintStroke* stroke) {
    if (!stroke) return kNone;
    if (!strokes_.empty()) {
        const Stroke& last = strokes_.back();
        const double* dashes = dashes_.data() + last.dashes;
        if (SamePaint(last.stroke.colour, stroke->colour) && last.stroke.width == stroke->width &&
            last.stroke.cap == stroke->cap && last.stroke.join == stroke->join &&
            last.stroke.miterLimit == stroke->miterLimit &&
            std::equal(dashes, dashes + last.dashCount, stroke->dashes.begin(), stroke->dashes.end()))
            return Last(strokes_.size());
    }
    strokes_.push_back({*stroke, dashes_.size(), static_cast<std::uint32_t>(stroke->dashes.size())});
    strokes_.back().stroke.dashes = {};
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
                       group.isLinkTarget});
    Body& body = Open();
    // A group's box comes from what it holds, see EndGroup.
    body.calls.push_back({Kind::kBeginGroup, false, Last(groups_.size()), 0, {}});
    body.openGroups.push_back(Last(body.calls.size()));
    return kGeneratorDone;
}

int ORVPageRecording::EndGroup() {
    Body& body = Open();
    if (body.openGroups.empty()) return kDrawingFailed;
    Call& group = body.calls[body.openGroups.back()];
    group.end = static_cast<std::uint32_t>(body.calls.size());
    body.openGroups.pop_back();
    const Box box = group.box;
    Add(Kind::kEndGroup, 0, box);
    return kGeneratorDone;
}

int ORVPageRecording::BeginClip(const ORVMathBox2D& box) {
    clips_.push_back(box);
    Add(Kind::kBeginClip, Last(clips_.size()), {});
    return kGeneratorDone;
}

int ORVPageRecording::EndClip() {
    Add(Kind::kEndClip, 0, {});
    return kGeneratorDone;
}

int ORVPageRecording::BeginSymbol(const ORVPrintSymbol& symbol) {
    const auto known = symbols_.find(symbol.key);
    const std::uint32_t map = AddMap(symbol.toPage);
    if (known != symbols_.end()) {
        placements_.push_back({known->second, map});
        const Box& box = bodies_[known->second].box;
        ORVMathBox2D extent;
        if (!box.IsEmpty()) {
            extent.Add({static_cast<double>(box.xMin), static_cast<double>(box.yMin)});
            extent.Add({static_cast<double>(box.xMax), static_cast<double>(box.yMax)});
        }
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

int ORVPageRecording::DrawShape(const ORVPrintShape& shape) {
    Shape kept{verbs_.size(),
               points_.size(),
               static_cast<std::uint32_t>(shape.path.verbs.size()),
               static_cast<std::uint32_t>(shape.path.points.size()),
               AddMap(shape.toPage),
               AddFill(shape.fill),
               AddStroke(shape.stroke),
               AddId(shape.id)};
    ORVMathBox2D box;
    for (const ORVMathPoint2D& p : shape.path.points) box.Add(shape.toPage(p));
    WidenByPen(box, Reach(shape.stroke), shape.toPage);
    verbs_.insert(verbs_.end(), shape.path.verbs.begin(), shape.path.verbs.end());
    points_.insert(points_.end(), shape.path.points.begin(), shape.path.points.end());
    shapes_.push_back(kept);
    Add(Kind::kShape, Last(shapes_.size()), Extent(box));
    return kGeneratorDone;
}

int ORVPageRecording::DrawText(const ORVPrintText& text) {
    texts_.push_back({text.layout, std::string(text.text), AddMap(text.toPage), AddFill(text.fill),
                      AddStroke(text.stroke), AddId(text.id), text.clip != nullptr,
                      text.clip ? *text.clip : ORVPrintPath()});
    ORVMathBox2D box = ORVCallMapper::Map(text.toPage, TextBox(text.layout));
    WidenByPen(box, Reach(text.stroke), text.toPage);
    Add(Kind::kText, Last(texts_.size()), Extent(box));
    return kGeneratorDone;
}

int ORVPageRecording::DrawImage(const ORVPrintImage& image) {
    Keep(image.image);
    images_.push_back({&image.image, AddMap(image.toPage), AddId(image.id)});
    ORVMathBox2D square;
    square.Add({0.0, 0.0});
    square.Add({1.0, 1.0});
    Add(Kind::kImage, Last(images_.size()), Extent(ORVCallMapper::Map(image.toPage, square)));
    return kGeneratorDone;
}

void ORVPageRecording::Finish(const ORVMathBox2D& page) {
    // A drawing that broke off leaves groups and symbols open.
    while (openBodies_.size() > 1 && EndSymbol() == kGeneratorDone) {
    }
    while (!bodies_.front().openGroups.empty() && EndGroup() == kGeneratorDone) {
    }
    std::vector<Call>& calls = bodies_.front().calls;
    std::vector<std::uint32_t> open;
    for (std::uint32_t i = 0; i < calls.size(); ++i) {
        if (calls[i].kind == Kind::kEndGroup) open.pop_back();
        if (calls[i].kind != Kind::kBeginGroup) continue;
        open.push_back(i);
        const bool isHidden = calls[i].box.IsEmpty() || !calls[i].box.Touches(page);
        if (!groups_[calls[i].index].isLinkTarget || !isHidden) continue;
        // Whoever follows the link shall arrive somewhere.
        for (auto group = open.rbegin(); group != open.rend() && !calls[*group].isNeeded; ++group)
            calls[*group].isNeeded = true;
    }
}

void ORVPageRecording::SelectBand(double yMin, double yMax) {
    ORVMathBox2D band;
    band.xMin = -std::numeric_limits<double>::infinity();
    band.xMax = std::numeric_limits<double>::infinity();
    band.yMin = yMin;
    band.yMax = yMax;
    const std::vector<Call>& calls = bodies_.front().calls;
    band_.clear();
    for (std::uint32_t i = 0; i < calls.size(); ++i) {
        const Call& call = calls[i];
        const bool isClip = call.kind == Kind::kBeginClip || call.kind == Kind::kEndClip;
        if (call.kind == Kind::kBeginGroup) {
            if (!call.isNeeded && !call.box.Touches(band)) {
                i = call.end;
                continue;
            }
        } else if (!isClip && call.kind != Kind::kEndGroup && !call.box.Touches(band)) {
            continue;
        }
        band_.push_back(i);
    }
}

int ORVPageRecording::Replay(ORVPrintGenerator& target, const ORVMathBox2D& box) {
    std::vector<Call>& calls = bodies_.front().calls;
    std::uint32_t skippedTo = 0;
    for (const std::uint32_t place : band_) {
        if (place < skippedTo) continue;
        Call& call = calls[place];
        int result = kGeneratorDone;
        switch (call.kind) {
            case Kind::kBeginGroup:
                if (!call.isNeeded && !call.box.Touches(box)) {
                    skippedTo = call.end + 1;
                    continue;
                }
                result = BeginReplayedGroup(target, call);
                call.isNeeded = false;  // has been shown
                break;
            case Kind::kEndGroup: result = target.EndGroup(); break;
            case Kind::kBeginClip: result = target.BeginClip(clips_[call.index]); break;
            case Kind::kEndClip: result = target.EndClip(); break;
            default:
                if (call.box.Touches(box)) result = ReplayCall(target, call, {});
                break;
        }
        if (result != kGeneratorDone) return result;
    }
    return kGeneratorDone;
}

int ORVPageRecording::BeginReplayedGroup(ORVPrintGenerator& target, const Call& call) {
    Group& group = groups_[call.index];
    const bool isLinkTarget = group.isLinkTarget;
    group.isLinkTarget = false;
    return target.BeginGroup(
        {group.id, group.description, group.linkElementId, group.linkURL, group.linkShow, isLinkTarget});
}

const ORVPrintFill* ORVPageRecording::FillOf(std::uint32_t index) const {
    return index == kNone ? nullptr : &fills_[index];
}

const ORVPrintStroke* ORVPageRecording::StrokeOf(std::uint32_t index) {
    if (index == kNone) return nullptr;
    const Stroke& kept = strokes_[index];
    stroke_ = kept.stroke;
    stroke_.dashes = {dashes_.data() + kept.dashes, kept.dashCount};
    return &stroke_;
}

int ORVPageRecording::ReplayCall(ORVPrintGenerator& target, const Call& call, const ORVMathAffine2D& map) {
    switch (call.kind) {
        case Kind::kShape: {
            const Shape& kept = shapes_[call.index];
            path_.verbs.assign(verbs_.data() + kept.verbs, verbs_.data() + kept.verbs + kept.verbCount);
            path_.points.assign(points_.data() + kept.points, points_.data() + kept.points + kept.pointCount);
            const auto shape = mapper_.Map(
                map, {path_, maps_[kept.map], FillOf(kept.fill), StrokeOf(kept.stroke), IdOf(kept.id)});
            return shape ? target.DrawShape(*shape) : kGeneratorDone;
        }
        case Kind::kText: {
            const Text& kept = texts_[call.index];
            const auto text = mapper_.Map(
                map, {kept.layout, kept.text, maps_[kept.map], FillOf(kept.fill), StrokeOf(kept.stroke),
                      kept.isClipped ? &kept.clip : nullptr, IdOf(kept.id)});
            return text ? target.DrawText(*text) : kGeneratorDone;
        }
        case Kind::kImage: {
            const Image& kept = images_[call.index];
            const auto image = ORVCallMapper::Map(map, {*kept.image, maps_[kept.map], IdOf(kept.id)});
            return image ? target.DrawImage(*image) : kGeneratorDone;
        }
        case Kind::kSymbol: return ReplayBody(target, placements_[call.index]);
        default: return kGeneratorDone;
    }
}

int ORVPageRecording::ReplayBody(ORVPrintGenerator& target, const Placement& placement) {
    struct Frame {
        const Body* body;
        std::size_t next;
        ORVMathAffine2D map;  // to the target's present coordinates
        bool isSymbol;        // which the target stores
    };
    std::vector<Frame> open;
    const auto begin = [&](const Placement& placed, const ORVMathAffine2D& map) -> int {
        const Body& body = bodies_[placed.symbol];
        const ORVMathAffine2D toTarget = map * maps_[placed.map];
        if (!ORVCallMapper::IsUsable(toTarget)) return kGeneratorDone;
        switch (const int answer = target.BeginSymbol({body.key, toTarget})) {
            case ORVPrintGenerator::kSymbolKnown: return kGeneratorDone;
            case ORVPrintGenerator::kDrawSymbol: open.push_back({&body, 0, {}, true}); break;
            case ORVPrintGenerator::kNoSymbols: open.push_back({&body, 0, toTarget, false}); break;
            default: return answer;
        }
        return kGeneratorDone;
    };
    int result = begin(placement, {});
    while (result == kGeneratorDone && !open.empty()) {
        Frame& frame = open.back();
        if (frame.next == frame.body->calls.size()) {
            if (frame.isSymbol) result = target.EndSymbol();
            open.pop_back();
            continue;
        }
        const Call& call = frame.body->calls[frame.next++];
        result = call.kind == Kind::kSymbol ? begin(placements_[call.index], frame.map)
                                            : ReplayCall(target, call, frame.map);
    }
    return result;
}
