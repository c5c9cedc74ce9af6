// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/ORVSheetCanvas.h"

#include <utility>

#include "generators/common/generator_status.h"

ORVPrintColour ORVSheetCanvas::Dim(ORVPrintColour colour) const {
    if (!opacities_.empty()) colour.opacity = ORVDimmed(colour.opacity, opacities_.back());
    return colour;
}

bool ORVSheetCanvas::ConvertGradient(const ORVPrintGradient*& gradient, bool isArea,
                                     ORVPrintGradient& storage,
                                     std::vector<ORVPrintGradientStop>& stops) const {
    stops.assign(gradient->stops.begin(), gradient->stops.end());
    for (ORVPrintGradientStop& stop : stops) stop.colour = Dim(stop.colour);
    if (!ink_.ConvertStops(stops, isArea)) return false;
    storage = *gradient;
    storage.stops = stops;
    gradient = &storage;
    return true;
}

const ORVPrintFill* ORVSheetCanvas::ConvertFill(const ORVPrintFill* fill, bool isText) {
    if (!fill || !Converts()) return fill;
    fill_ = *fill;
    fill_.colour = Dim(fill->colour);
    if (fill->gradient) {
        if (!ConvertGradient(fill_.gradient, !isText, fillGradient_, fillStops_)) return nullptr;
        fill_.colour = fillStops_.front().colour;
    } else if (fill->pattern) {
        fill_.pattern = &ink_.ConvertPattern(*fill->pattern);
        // For a pattern, only the opacity of the colour is used.
        fill_.colour = ink_.ConvertLine({0, 0, 0, fill_.colour.opacity});
    } else if (isText) {
        fill_.colour = ink_.ConvertLine(fill_.colour);
    } else if (!ink_.ConvertArea(fill_.colour)) {
        return nullptr;
    }
    return &fill_;
}

const ORVPrintStroke* ORVSheetCanvas::ConvertStroke(const ORVPrintStroke* stroke) {
    if (!stroke || !Converts()) return stroke;
    stroke_ = *stroke;
    stroke_.colour = ink_.ConvertLine(Dim(stroke->colour));
    if (stroke->gradient) {
        if (!ConvertGradient(stroke_.gradient, false, strokeGradient_, strokeStops_)) return nullptr;
        stroke_.colour = strokeStops_.front().colour;
    }
    return &stroke_;
}

int ORVSheetCanvas::BeginClip(const ORVMathBox2D& box) {
    return target_.BeginClip(ORVCallMapper::Map(Map(), box));
}

int ORVSheetCanvas::BeginClipPath(const ORVPrintClipPath& clip) {
    return target_.BeginClipPath(ORVCallMapper::Map(Map(), clip));
}

int ORVSheetCanvas::BeginLayer(const ORVPrintLayer& layer) {
    ORVPrintLayer placed = ORVCallMapper::Map(Map(), layer);
    double inColours = opacities_.empty() ? 1.0 : opacities_.back();
    // Fully transparent layers stay so; otherwise their lines would turn black.
    if (openMasks_ == 0 && ink_.IsMono() && layer.opacity > 0.0) {
        inColours *= layer.opacity;
        placed.opacity = 1.0;
    }
    opacities_.push_back(inColours);
    return target_.BeginLayer(placed);
}

int ORVSheetCanvas::EndLayer() {
    if (opacities_.empty()) return kDrawingFailed;
    opacities_.pop_back();
    return target_.EndLayer();
}

int ORVSheetCanvas::BeginMask(const ORVPrintMask& mask) {
    const int answer = target_.BeginMask(ORVCallMapper::Map(Map(), mask));
    if (answer == kGeneratorDone) ++openMasks_;
    return answer;
}

int ORVSheetCanvas::EndMask() {
    if (openMasks_ == 0) return kDrawingFailed;
    --openMasks_;
    return target_.EndMask();
}

void ORVSheetCanvas::AddInkSteps(std::vector<ORVPrintFilterStep>& steps) const {
    const auto add = [&](ORVFilterOperation operation) {
        ORVPrintFilterStep step;
        step.operation = std::move(operation);
        step.inputs = {static_cast<int>(steps.size()) - 1};
        step.isLinear = false;
        step.subregion = steps.back().subregion;
        steps.push_back(std::move(step));
    };
    constexpr double kRed = 77.0 / 256.0, kGreen = 150.0 / 256.0, kBlue = 29.0 / 256.0;  // luminance weights
    const double opacity = opacities_.empty() ? 1.0 : opacities_.back();
    add(ORVFilterColours{{kRed, kGreen, kBlue, 0, 0, kRed, kGreen, kBlue, 0,       0,
                          kRed, kGreen, kBlue, 0, 0, 0,    0,      0,     opacity, 0}});
    if (!ink_.AreAreasMono()) return;
    ORVFilterTransfer::Function sharp;
    sharp.kind = ORVFilterTransfer::Function::Kind::kDiscrete;
    sharp.values = {0.0, 1.0};
    add(ORVFilterTransfer{{sharp, sharp, sharp, sharp}});
}

int ORVSheetCanvas::BeginFilter(const ORVPrintFilter& filter) {
    ORVPrintFilter placed = ORVCallMapper::Map(Map(), filter);
    const bool converts = Converts() && (GetPowers() & kFilters) != 0;
    std::vector<ORVPrintFilterStep> steps;
    if (converts) {
        steps.assign(filter.steps.begin(), filter.steps.end());
        AddInkSteps(steps);
        placed.steps = steps;
        ++openMasks_;
    }
    filtersConvert_.push_back(converts);
    return target_.BeginFilter(placed);
}

int ORVSheetCanvas::EndFilter() {
    if (filtersConvert_.empty()) return kDrawingFailed;
    if (filtersConvert_.back()) --openMasks_;
    filtersConvert_.pop_back();
    return target_.EndFilter();
}

int ORVSheetCanvas::BeginFilterInput() { return target_.BeginFilterInput(); }

int ORVSheetCanvas::EndFilterInput() { return target_.EndFilterInput(); }

int ORVSheetCanvas::BeginSymbol(const ORVPrintSymbol& symbol) {
    // Symbols are stored once and have the same colours at every place.
    const bool isDim = !opacities_.empty() && opacities_.back() < 1.0;
    if (ink_.ChangesColours() && (openMasks_ > 0 || isDim)) return kNoSymbols;
    const ORVMathAffine2D toPage = Map() * symbol.toPage;
    if (!ORVCallMapper::IsUsable(toPage)) return kSymbolKnown;  // invisible here
    const int answer = target_.BeginSymbol({symbol.key, toPage});
    if (answer == kDrawSymbol) ++openSymbols_;
    return answer;
}

int ORVSheetCanvas::EndSymbol() {
    if (openSymbols_ == 0) return kDrawingFailed;
    --openSymbols_;
    return target_.EndSymbol();
}

int ORVSheetCanvas::DrawShape(const ORVPrintShape& shape) {
    const ORVPrintFill* fill = ConvertFill(shape.fill, false);
    const auto placed =
        mapper_.Map(Map(), {shape.path, shape.toPage, fill, ConvertStroke(shape.stroke), shape.id});
    return placed ? target_.DrawShape(*placed) : kGeneratorDone;
}

int ORVSheetCanvas::DrawText(const ORVPrintText& text) {
    const ORVPrintFill* fill = ConvertFill(text.fill, true);
    const auto placed = mapper_.Map(
        Map(), {text.layout, text.text, text.toPage, fill, ConvertStroke(text.stroke), text.clip, text.id});
    return placed ? target_.DrawText(*placed) : kGeneratorDone;
}

int ORVSheetCanvas::DrawImage(const ORVPrintImage& image) {
    const double opacity = opacities_.empty() ? 1.0 : opacities_.back();
    const ORVPixelImage& converted =
        Converts() ? ink_.ConvertImage(image.image, ORVDimmed(255, opacity)) : image.image;
    const auto placed = ORVCallMapper::Map(Map(), {converted, image.toPage, image.id, image.isSmooth});
    return placed ? target_.DrawImage(*placed) : kGeneratorDone;
}
