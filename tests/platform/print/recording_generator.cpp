// SPDX-License-Identifier: Apache-2.0
#include "tests/platform/print/recording_generator.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

std::string Number(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%.3f", value);
    std::string digits = text;
    while (digits.back() == '0') digits.pop_back();
    if (digits.back() == '.') digits.pop_back();
    return digits == "-0" ? "0" : digits;
}

std::string Point(const ORVMathPoint2D& p) { return Number(p.x) + "," + Number(p.y); }

std::string Map(const ORVMathAffine2D& m) {
    return "[" + Number(m.m11) + " " + Number(m.m12) + " " + Number(m.m21) + " " + Number(m.m22) + " " +
           Number(m.dx) + " " + Number(m.dy) + "]";
}

std::string Outline(const ORVPrintPath& path, const ORVMathAffine2D& map) {
    std::string text;
    auto p = path.points.begin();
    for (const ORVPrintPath::Verb verb : path.verbs) {
        switch (verb) {
            case ORVPrintPath::Verb::kMove: text += " M" + Point(map(*p++)); break;
            case ORVPrintPath::Verb::kLine: text += " L" + Point(map(*p++)); break;
            case ORVPrintPath::Verb::kCubic:
                text += " C" + Point(map(p[0])) + " " + Point(map(p[1])) + " " + Point(map(p[2]));
                p += 3;
                break;
            case ORVPrintPath::Verb::kClose: text += " Z"; break;
        }
    }
    return text;
}

std::string Colour(const ORVPrintColour& c) {
    char text[32];
    std::snprintf(text, sizeof text, c.opacity == 255 ? "#%02x%02x%02x" : "#%02x%02x%02x@%d", c.red, c.green,
                  c.blue, c.opacity);
    return text;
}

std::string Gradient(const ORVPrintGradient& gradient) {
    std::string text = gradient.kind == ORVPrintGradient::Kind::kLinear ? "linear" : "radial";
    if (gradient.spread == ORVPrintGradient::Spread::kReflect) text += " reflect";
    if (gradient.spread == ORVPrintGradient::Spread::kRepeat) text += " repeat";
    text += " " + Point(gradient.start);
    if (gradient.kind == ORVPrintGradient::Kind::kRadial) text += " r" + Number(gradient.startRadius);
    text += " " + Point(gradient.end);
    if (gradient.kind == ORVPrintGradient::Kind::kRadial) text += " r" + Number(gradient.endRadius);
    text += " " + Map(gradient.toPage);
    for (const ORVPrintGradientStop& stop : gradient.stops)
        text += " " + Number(stop.offset) + " " + Colour(stop.colour);
    return text;
}

std::string Fill(const ORVPrintFill& fill) {
    std::string text = Colour(fill.colour);
    if (fill.gradient) text = Gradient(*fill.gradient);
    if (fill.pattern) text = "pattern@" + std::to_string(fill.colour.opacity) + Map(fill.patternToPage);
    return text + (fill.evenOdd ? " eo" : "");
}

std::string Stroke(const ORVPrintStroke& stroke) {
    std::string text =
        (stroke.gradient ? Gradient(*stroke.gradient) : Colour(stroke.colour)) + " w" + Number(stroke.width);
    if (stroke.cap == ORVPrintStroke::Cap::kRound) text += " round-cap";
    if (stroke.cap == ORVPrintStroke::Cap::kSquare) text += " square-cap";
    if (stroke.join == ORVPrintStroke::Join::kRound) text += " round-join";
    if (stroke.join == ORVPrintStroke::Join::kBevel) text += " bevel-join";
    if (stroke.miterLimit != ORVPrintStroke().miterLimit) text += " miter" + Number(stroke.miterLimit);
    for (std::size_t i = 0; i < stroke.dashes.size(); ++i)
        text += (i == 0 ? " d" : ",") + Number(stroke.dashes[i]);
    if (stroke.dashOffset != 0.0) text += " o" + Number(stroke.dashOffset);
    return text;
}

std::string Box(const ORVMathBox2D& box) {
    return Point({box.xMin, box.yMin}) + " to " + Point({box.xMax, box.yMax});
}

constexpr std::array kBlendNames{"normal",     "multiply",   "screen",      "overlay",
                                 "darken",     "lighten",    "color-dodge", "color-burn",
                                 "hard-light", "soft-light", "difference",  "exclusion",
                                 "hue",        "saturation", "color",       "luminosity"};

std::string Name(std::string_view id) { return id.empty() ? "" : " #" + std::string(id); }

std::string Quoted(std::string_view text) { return "\"" + std::string(text) + "\""; }

}  // namespace

int RecordingGenerator::Add(std::string line) {
    ++calls_;
    if (failAt_ != 0 && calls_ >= failAt_) line += " failed";
    lines_.push_back(std::move(line));
    return failAt_ != 0 && calls_ >= failAt_ ? -99 : 1;
}

std::vector<std::string> RecordingGenerator::GetDrawn() const {
    std::vector<std::string> drawn;
    for (const std::string& line : lines_)
        if (line.starts_with("fill") || line.starts_with("stroke") || line.starts_with("text") ||
            line.starts_with("image"))
            drawn.push_back(line);
    return drawn;
}

std::string RecordingGenerator::GetText() const {
    std::string text;
    for (const std::string& line : lines_) text += line + "\n";
    return text;
}

int RecordingGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    return Add("document " + Quoted(info.title) + " " + std::to_string(info.pageCount));
}

int RecordingGenerator::BeginPage(const ORVPrintPageInfo& info) {
    return Add("page " + std::to_string(info.number) + " " + Number(info.width) + "x" + Number(info.height));
}

int RecordingGenerator::BeginGroup(const ORVPrintGroup& group) {
    std::string line = "group";
    if (!group.id.empty()) line += " #" + std::string(group.id);
    if (!group.description.empty()) line += " " + Quoted(group.description);
    if (!group.linkElementId.empty()) line += " ->#" + std::string(group.linkElementId);
    if (!group.linkURL.empty()) line += " ->" + std::string(group.linkURL);
    if (group.isLinkTarget) line += " target";
    return Add(line);
}

int RecordingGenerator::BeginClip(const ORVMathBox2D& box) { return Add("clip " + Box(box)); }

int RecordingGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    return Add("clip path" + std::string(clip.evenOdd ? " eo" : "") + Outline(clip.path, clip.toPage));
}

int RecordingGenerator::BeginLayer(const ORVPrintLayer& layer) {
    std::string line =
        "layer " + Number(layer.opacity) + " " + kBlendNames[static_cast<std::size_t>(layer.blend)];
    if (!layer.isIsolated) line += " not isolated";
    if (layer.hasMask) line += " masked";
    return Add(line + " " + Box(layer.box));
}

int RecordingGenerator::BeginMask(const ORVPrintMask& mask) {
    if ((powers_ & kMasks) == 0) return kSkipMask;
    const bool isLuminance = mask.kind == ORVPrintMask::Kind::kLuminance;
    return Add(std::string("mask ") + (isLuminance ? "luminance " : "opacity ") + Box(mask.box));
}

int RecordingGenerator::BeginFilter(const ORVPrintFilter& filter) {
    std::string line = "filter";
    for (const ORVPrintFilterStep& step : filter.steps) line += " " + std::to_string(step.operation.index());
    return Add(line + " " + Map(filter.toPage));
}

int RecordingGenerator::BeginFilterInput() {
    return (powers_ & kFilters) == 0 ? static_cast<int>(kSkipInput) : Add("input");
}

int RecordingGenerator::BeginSymbol(const ORVPrintSymbol& symbol) {
    ++announcements_;
    if (!takesSymbols_) return kNoSymbols;
    const auto known = std::find(symbols_.begin(), symbols_.end(), symbol.key);
    const bool isKnown = known != symbols_.end();
    const int result = Add((isKnown ? "symbol " : "new symbol ") +
                           std::to_string(known - symbols_.begin() + 1) + " " + Map(symbol.toPage));
    if (!isKnown) symbols_.push_back(symbol.key);
    return result != 1 ? result : isKnown ? kSymbolKnown : kDrawSymbol;
}

int RecordingGenerator::DrawShape(const ORVPrintShape& shape) {
    std::string line;
    if (shape.fill) line += "fill " + Fill(*shape.fill);
    if (shape.stroke) line += (line.empty() ? "stroke " : " stroke ") + Stroke(*shape.stroke);
    return Add(line + Outline(shape.path, shape.toPage) + Name(shape.id));
}

int RecordingGenerator::DrawText(const ORVPrintText& text) {
    std::string line = "text " + Quoted(text.text) + " " + Map(text.toPage);
    if (text.fill) line += " fill " + Fill(*text.fill);
    if (text.stroke) line += " stroke " + Stroke(*text.stroke);
    if (text.clip) line += " clip" + Outline(*text.clip, {});
    return Add(line + Name(text.id));
}

int RecordingGenerator::DrawImage(const ORVPrintImage& image) {
    return Add("image " + std::to_string(image.image.GetWidth()) + "x" +
               std::to_string(image.image.GetHeight()) + " " + Map(image.toPage) + Name(image.id));
}
