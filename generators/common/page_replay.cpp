// SPDX-License-Identifier: Apache-2.0

// Replays page recordings.

#include <algorithm>

#include "generators/common/ORVPageRecording.h"
#include "generators/common/generator_status.h"

void ORVPageRecording::Finish(const ORVMathBox2D& page) {
    // An aborted drawing leaves parts and symbols open.
    while (openBodies_.size() > 1 && EndSymbol() == kGeneratorDone) {
    }
    std::vector<Call>& calls = bodies_.front().calls;
    const std::vector<std::uint32_t>& openParts = bodies_.front().openParts;
    while (!openParts.empty() && EndPart(EndOf(calls[openParts.back()].kind)) == kGeneratorDone) {
    }
    std::vector<std::uint32_t> open;
    const auto isHidden = [&](std::uint32_t part) {
        return calls[part].kind != Kind::kBeginMask && calls[part].kind != Kind::kBeginFilterInput &&
               (calls[part].box.IsEmpty() || !calls[part].box.Touches(page));
    };
    for (std::uint32_t i = 0; i < calls.size(); ++i) {
        if (EndsPart(calls[i].kind)) open.pop_back();
        if (!BeginsPart(calls[i].kind)) continue;
        open.push_back(i);
        if (calls[i].kind != Kind::kBeginGroup || !groups_[calls[i].index].isLinkTarget) continue;
        if (std::none_of(open.begin(), open.end(), isHidden)) continue;
        // Links to the group must have a target even if it shows nothing.
        for (auto part = open.rbegin(); part != open.rend() && !calls[*part].isNeeded; ++part)
            calls[*part].isNeeded = true;
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
    std::uint32_t wholeTo = 0;  // end of a filter, inside which all is replayed: its result may be displaced
    for (std::uint32_t i = 0; i < calls.size(); ++i) {
        const Call& call = calls[i];
        if (i >= wholeTo && !IsFrame(call.kind) && !call.isNeeded && !call.box.Touches(band)) {
            if (BeginsPart(call.kind)) i = call.end;
            continue;
        }
        if (i >= wholeTo && call.kind == Kind::kBeginFilter) wholeTo = call.end;
        band_.push_back(i);
    }
}

int ORVPageRecording::Replay(ORVPrintGenerator& target, const ORVMathBox2D& box, const ORVMathAffine2D& map) {
    return ReplayPlaces(target, &band_, box, map);
}

int ORVPageRecording::ReplaySoFar(ORVPrintGenerator& target, const ORVMathBox2D& box,
                                  const ORVMathAffine2D& map) {
    return ReplayPlaces(target, nullptr, box, map);
}

int ORVPageRecording::ReplayPlaces(ORVPrintGenerator& target, const std::vector<std::uint32_t>* places,
                                   const ORVMathBox2D& box, const ORVMathAffine2D& map) {
    std::vector<Call>& calls = bodies_.front().calls;
    const std::size_t count = places ? places->size() : calls.size();
    std::vector<Kind> open;
    std::size_t skippedTo = 0, wholeTo = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t place = places ? (*places)[i] : i;
        if (place < skippedTo) continue;
        Call& call = calls[place];
        const bool isOpen = BeginsPart(call.kind) && call.end == 0;
        if (place >= wholeTo && !IsFrame(call.kind) && !call.isNeeded && !isOpen && !call.box.Touches(box)) {
            if (!BeginsPart(call.kind)) continue;
            if (!places) i = call.end;
            skippedTo = std::size_t{call.end} + 1;
            continue;
        }
        if (call.kind >= Kind::kSymbol) {
            if (const int result = ReplayCall(target, call, map); result != kGeneratorDone) return result;
            continue;
        }
        if (place >= wholeTo && call.kind == Kind::kBeginFilter) wholeTo = isOpen ? calls.size() : call.end;
        const int result = ReplayFrame(target, call, map);
        if (IsSkipped(call.kind, result)) {
            skippedTo = isOpen ? calls.size() : std::size_t{call.end} + 1;
            continue;
        }
        if (result != kGeneratorDone) return result;
        if (call.kind == Kind::kBeginClip || BeginsPart(call.kind))
            open.push_back(EndOf(call.kind));
        else if (!open.empty())
            open.pop_back();
    }
    for (; !open.empty(); open.pop_back()) {
        Call end{open.back(), false, 0, 0, {}};
        if (const int result = ReplayFrame(target, end, map); result != kGeneratorDone) return result;
    }
    return kGeneratorDone;
}

/// Replays the beginning or end of a clip or part.
int ORVPageRecording::ReplayFrame(ORVPrintGenerator& target, Call& call, const ORVMathAffine2D& map) {
    switch (call.kind) {
        case Kind::kBeginGroup: return BeginReplayedGroup(target, call);
        case Kind::kEndGroup: return target.EndGroup();
        case Kind::kBeginClip: {
            const ORVMathBox2D& box = clips_[call.index];
            return target.BeginClip(map == ORVMathAffine2D() ? box : ORVCallMapper::Map(map, box));
        }
        case Kind::kEndClip: return target.EndClip();
        case Kind::kBeginClipPath: {
            const ClipPath& kept = clipPaths_[call.index];
            call.isNeeded = false;
            return target.BeginClipPath(
                ORVCallMapper::Map(map, {PathOf(kept.path), maps_[kept.map], kept.evenOdd}));
        }
        case Kind::kEndClipPath: return target.EndClipPath();
        case Kind::kBeginLayer:
            call.isNeeded = false;
            return target.BeginLayer(ORVCallMapper::Map(map, layers_[call.index]));
        case Kind::kEndLayer: return target.EndLayer();
        case Kind::kBeginMask: return target.BeginMask(ORVCallMapper::Map(map, masks_[call.index]));
        case Kind::kEndMask: return target.EndMask();
        case Kind::kBeginFilter:
            call.isNeeded = false;
            return target.BeginFilter(ORVCallMapper::Map(map, filters_[call.index].filter));
        case Kind::kEndFilter: return target.EndFilter();
        case Kind::kBeginFilterInput: return target.BeginFilterInput();
        case Kind::kEndFilterInput: return target.EndFilterInput();
        default: return kDrawingFailed;
    }
}

int ORVPageRecording::BeginReplayedGroup(ORVPrintGenerator& target, Call& call) {
    Group& group = groups_[call.index];
    const bool isLinkTarget = group.isLinkTarget;
    group.isLinkTarget = false;
    call.isNeeded = false;  // the target was reported
    const ORVPrintContentLayer layer{group.layerLabel, group.isLayerShown, group.isLayerLocked};
    return target.BeginGroup({group.id, group.description, group.linkElementId, group.linkURL, group.linkShow,
                              isLinkTarget, group.isLayer ? &layer : nullptr});
}

const ORVPrintPath& ORVPageRecording::PathOf(const Path& kept) {
    path_.verbs.assign(verbs_.data() + kept.verbs, verbs_.data() + kept.verbs + kept.verbCount);
    path_.points.assign(points_.data() + kept.points, points_.data() + kept.points + kept.pointCount);
    return path_;
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
            const auto shape = mapper_.Map(map, {PathOf(kept.path), maps_[kept.map], FillOf(kept.fill),
                                                 StrokeOf(kept.stroke), IdOf(kept.id)});
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
            const auto image =
                ORVCallMapper::Map(map, {*kept.image, maps_[kept.map], IdOf(kept.id), kept.isSmooth});
            return image ? target.DrawImage(*image) : kGeneratorDone;
        }
        case Kind::kSymbol: return ReplayBody(target, placements_[call.index], map);
        default: return kGeneratorDone;
    }
}

int ORVPageRecording::ReplayBody(ORVPrintGenerator& target, const Placement& placement,
                                 const ORVMathAffine2D& outer) {
    struct Frame {
        Body* body;
        std::size_t next;
        ORVMathAffine2D map;  // to the target's current coordinates
        bool isSymbol;        // stored by the target as a symbol
    };
    std::vector<Frame> open;
    const auto begin = [&](const Placement& placed, const ORVMathAffine2D& map) -> int {
        Body& body = bodies_[placed.symbol];
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
    int result = begin(placement, outer);
    while (result == kGeneratorDone && !open.empty()) {
        Frame& frame = open.back();
        if (frame.next == frame.body->calls.size()) {
            if (frame.isSymbol) result = target.EndSymbol();
            open.pop_back();
            continue;
        }
        Call& call = frame.body->calls[frame.next++];
        if (call.kind == Kind::kSymbol) {
            result = begin(placements_[call.index], frame.map);
        } else if (call.kind > Kind::kSymbol) {
            result = ReplayCall(target, call, frame.map);
        } else {
            result = ReplayFrame(target, call, frame.map);
            if (!IsSkipped(call.kind, result)) continue;
            frame.next = std::size_t{call.end} + 1;
            result = kGeneratorDone;
        }
    }
    return result;
}
