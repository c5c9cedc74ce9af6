// SPDX-License-Identifier: Apache-2.0
#include "library/dump/call_dump.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <string>
#include <variant>

#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

constexpr std::array<const char*, 16> kBlendNames{"normal",     "multiply",   "screen",      "overlay",
                                                  "darken",     "lighten",    "color-dodge", "color-burn",
                                                  "hard-light", "soft-light", "difference",  "exclusion",
                                                  "hue",        "saturation", "color",       "luminosity"};
constexpr std::array<const char*, 3> kSpreads{"pad", "reflect", "repeat"};
constexpr std::array<const char*, 3> kCaps{"butt", "round", "square"};
constexpr std::array<const char*, 4> kJoins{"miter", "round", "bevel", "miter-clip"};

template <std::size_t kCount, class Value>
const char* TextOf(const std::array<const char*, kCount>& texts, Value value) {
    return texts[static_cast<std::size_t>(value)];
}

}  // namespace

CallDump::CallDump(JsonWriter& json) : json_(json) {
    json_.BeginObject();
    json_.Key("pages");
    json_.BeginArray();
}

void CallDump::Finish(int result) {
    while (open_ > 0) Close();
    json_.EndArray();
    json_.Key("result");
    json_.Integer(result);
    json_.EndObject();
    json_.LineBreak();
}

void CallDump::Open(const char* kind) {
    json_.BeginObject();
    json_.Key("kind");
    json_.Text(kind);
}

int CallDump::OpenContent() {
    json_.Key("content");
    json_.BeginArray();
    ++open_;
    return 1;
}

int CallDump::Close() {
    json_.EndArray();
    json_.EndObject();
    --open_;
    return 1;
}

void CallDump::WriteText(const char* key, std::string_view text) {
    if (text.empty()) return;
    json_.Key(key);
    json_.Text(text);
}

void CallDump::WriteNumber(const char* key, double number) {
    json_.Key(key);
    json_.Number(number);
}

void CallDump::WriteBox(const char* key, const ORVMathBox2D& box) {
    json_.Key(key);
    json_.BeginArray();
    for (const double value : {box.xMin, box.yMin, box.xMax, box.yMax}) json_.Number(value);
    json_.EndArray();
}

void CallDump::WriteMap(const ORVMathAffine2D& map) {
    json_.Key("toPage");
    json_.BeginArray();
    for (const double value : {map.m11, map.m21, map.m12, map.m22, map.dx, map.dy}) json_.Number(value);
    json_.EndArray();
}

void CallDump::WritePath(const ORVPrintPath& path) {
    constexpr std::array<const char*, 4> kVerbs{"M", "L", "C", "Z"};
    constexpr std::array<std::size_t, 4> kPoints{1, 1, 3, 0};
    json_.Key("path");
    json_.BeginArray();
    std::size_t point = 0;
    for (const ORVPrintPath::Verb verb : path.verbs) {
        json_.Text(TextOf(kVerbs, verb));
        for (std::size_t i = 0; i < kPoints[static_cast<std::size_t>(verb)]; ++i, ++point) {
            json_.Number(path.points[point].x);
            json_.Number(path.points[point].y);
        }
    }
    json_.EndArray();
}

void CallDump::WriteColour(const char* key, const ORVPrintColour& colour) {
    std::array<char, 10> text{};
    const int length = std::snprintf(text.data(), text.size(), "#%02x%02x%02x%02x", colour.red, colour.green,
                                     colour.blue, colour.opacity);
    json_.Key(key);
    json_.Text({text.data(), static_cast<std::size_t>(length)});
}

void CallDump::WriteGradient(const ORVPrintGradient& gradient) {
    const bool isRadial = gradient.kind == ORVPrintGradient::Kind::kRadial;
    json_.Key("gradient");
    json_.BeginObject();
    json_.Key("kind");
    json_.Text(isRadial ? "radial" : "linear");
    json_.Key("spread");
    json_.Text(TextOf(kSpreads, gradient.spread));
    json_.Key("places");
    json_.BeginArray();
    for (const double value : {gradient.start.x, gradient.start.y, gradient.end.x, gradient.end.y})
        json_.Number(value);
    json_.EndArray();
    if (isRadial) {
        WriteNumber("startRadius", gradient.startRadius);
        WriteNumber("endRadius", gradient.endRadius);
    }
    json_.Key("stops");
    json_.BeginArray();
    for (const ORVPrintGradientStop& stop : gradient.stops) {
        json_.BeginObject();
        WriteNumber("offset", stop.offset);
        WriteColour("colour", stop.colour);
        json_.EndObject();
    }
    json_.EndArray();
    WriteMap(gradient.toPage);
    json_.EndObject();
}

void CallDump::WriteFill(const ORVPrintFill& fill) {
    json_.Key("fill");
    json_.BeginObject();
    WriteColour("colour", fill.colour);
    if (fill.evenOdd) {
        json_.Key("evenOdd");
        json_.Flag(true);
    }
    if (fill.gradient) WriteGradient(*fill.gradient);
    json_.EndObject();
}

void CallDump::WriteStroke(const ORVPrintStroke& stroke) {
    json_.Key("stroke");
    json_.BeginObject();
    WriteColour("colour", stroke.colour);
    WriteNumber("width", stroke.width);
    json_.Key("cap");
    json_.Text(TextOf(kCaps, stroke.cap));
    json_.Key("join");
    json_.Text(TextOf(kJoins, stroke.join));
    WriteNumber("miterLimit", stroke.miterLimit);
    if (!stroke.dashes.empty()) {
        json_.Key("dashes");
        json_.BeginArray();
        for (const double dash : stroke.dashes) json_.Number(dash);
        json_.EndArray();
        WriteNumber("dashOffset", stroke.dashOffset);
    }
    if (stroke.gradient) WriteGradient(*stroke.gradient);
    json_.EndObject();
}

int CallDump::BeginDocument(const ORVPrintDocumentInfo& /*info*/) { return 1; }

int CallDump::BeginPage(const ORVPrintPageInfo& info) {
    Open("page");
    json_.Key("size");
    json_.BeginArray();
    json_.Number(info.width);
    json_.Number(info.height);
    json_.EndArray();
    WriteText("id", info.id);
    WriteText("title", info.title);
    return OpenContent();
}

int CallDump::BeginGroup(const ORVPrintGroup& group) {
    Open("group");
    WriteText("id", group.id);
    WriteText("description", group.description);
    WriteText("link", group.linkURL);
    WriteText("linkElement", group.linkElementId);
    if (group.layer) {
        WriteText("layer", group.layer->label);
        if (!group.layer->isShown) WriteText("state", "hidden");
        if (group.layer->isLocked) WriteText("lock", "locked");
    }
    return OpenContent();
}

int CallDump::BeginClip(const ORVMathBox2D& box) {
    Open("clip");
    WriteBox("box", box);
    return OpenContent();
}

int CallDump::BeginClipPath(const ORVPrintClipPath& clip) {
    Open("clip");
    WritePath(clip.path);
    WriteMap(clip.toPage);
    return OpenContent();
}

int CallDump::BeginLayer(const ORVPrintLayer& layer) {
    Open("layer");
    WriteNumber("opacity", layer.opacity);
    json_.Key("blend");
    json_.Text(TextOf(kBlendNames, layer.blend));
    return OpenContent();
}

int CallDump::BeginMask(const ORVPrintMask& mask) {
    Open("mask");
    json_.Key("of");
    constexpr std::array<const char*, 3> kKinds{"luminance", "opacity", "linear-luminance"};
    json_.Text(TextOf(kKinds, mask.kind));
    WriteBox("box", mask.box);
    return OpenContent();
}

void CallDump::WriteStep(const ORVPrintFilterStep& step) {
    // In the order of the alternatives of ORVFilterOperation.
    constexpr std::array<const char*, std::variant_size_v<ORVFilterOperation>> kNames{
        "nothing",    "pass",  "blur",       "offset",        "flood",    "merge",
        "shadow",     "blend", "composite",  "colour-matrix", "transfer", "convolution",
        "morphology", "tile",  "turbulence", "displacement",  "lighting", "input"};
    json_.BeginObject();
    json_.Key("operation");
    json_.Text(kNames[step.operation.index()]);
    json_.Key("inputs");
    json_.BeginArray();
    for (const int input : step.inputs) {
        if (input == ORVPrintFilterStep::kSource)
            json_.Text("source");
        else if (input == ORVPrintFilterStep::kSourceAlpha)
            json_.Text("source-alpha");
        else
            json_.Integer(input);
    }
    json_.EndArray();
    json_.Key("linear");
    json_.Flag(step.isLinear);
    WriteExtent("subregion", step.subregion);
    json_.EndObject();
}

/// Writes a box unless it is infinite.
void CallDump::WriteExtent(const char* key, const ORVMathBox2D& box) {
    if (std::isfinite(box.xMax - box.xMin + box.yMax - box.yMin)) WriteBox(key, box);
}

int CallDump::BeginFilter(const ORVPrintFilter& filter) {
    Open("filter");
    WriteMap(filter.toPage);
    WriteExtent("region", filter.region);
    json_.Key("steps");
    json_.BeginArray();
    for (const ORVPrintFilterStep& step : filter.steps) WriteStep(step);
    json_.EndArray();
    return OpenContent();
}

int CallDump::BeginFilterInput() {
    Open("input");
    return OpenContent();
}

int CallDump::DrawShape(const ORVPrintShape& shape) {
    Open("shape");
    WriteText("id", shape.id);
    WritePath(shape.path);
    WriteMap(shape.toPage);
    if (shape.fill) WriteFill(*shape.fill);
    if (shape.stroke) WriteStroke(*shape.stroke);
    json_.EndObject();
    return 1;
}

int CallDump::DrawText(const ORVPrintText& text) {
    Open("text");
    WriteText("id", text.id);
    WriteText("text", text.text);
    WriteMap(text.toPage);
    WriteNumber("advance", text.layout.advance);
    if (text.fill) WriteFill(*text.fill);
    if (text.stroke) WriteStroke(*text.stroke);
    json_.EndObject();
    return 1;
}

int CallDump::DrawImage(const ORVPrintImage& image) {
    Open("image");
    WriteText("id", image.id);
    json_.Key("pixels");
    json_.BeginArray();
    json_.Integer(image.image.GetWidth());
    json_.Integer(image.image.GetHeight());
    json_.EndArray();
    if (!image.isSmooth) {
        json_.Key("smooth");
        json_.Flag(false);
    }
    WriteMap(image.toPage);
    json_.EndObject();
    return 1;
}
