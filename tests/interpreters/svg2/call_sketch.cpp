// SPDX-License-Identifier: Apache-2.0
#include "tests/interpreters/svg2/call_sketch.h"

#include <cmath>
#include <cstdio>

#include "generators/svg/svg_filter.h"
#include "interpreters/svg2/interpreter/ORVPrintSVG2Interpreter.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

constexpr double kPx = 96.0 / 90.0;  // px per user unit of the page

std::string Number(double value) {
    char text[32];
    const double rounded = std::round(value * 100.0) / 100.0;
    std::snprintf(text, sizeof text, "%g", rounded == 0.0 ? 0.0 : rounded);
    return text;
}

std::string Point(const ORVMathPoint2D& point) { return Number(point.x * kPx) + "," + Number(point.y * kPx); }

std::string Box(const ORVMathBox2D& box) {
    if (box.IsEmpty()) return "nothing";
    return Point({box.xMin, box.yMin}) + " " + Point({box.xMax, box.yMax});
}

std::string Colour(const ORVPrintColour& colour) {
    char text[10];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", colour.red, colour.green, colour.blue);
    return colour.opacity == 255 ? text : text + std::string("/") + std::to_string(colour.opacity);
}

std::string Gradient(const ORVPrintGradient& gradient) {
    constexpr const char* kSpreads[] = {"", " reflect", " repeat"};
    const bool isRadial = gradient.kind == ORVPrintGradient::Kind::kRadial;
    std::string text = isRadial ? "radial(" : "linear(";
    text += Point(gradient.toPage(gradient.start)) + " to " + Point(gradient.toPage(gradient.end));
    if (isRadial) text += " r " + Number(gradient.startRadius) + " to " + Number(gradient.endRadius);
    text += kSpreads[static_cast<int>(gradient.spread)];
    for (const ORVPrintGradientStop& stop : gradient.stops)
        text += ", " + Colour(stop.colour) + " " + Number(stop.offset);
    return text + ")";
}

class CallSketch final : public ORVPrintGenerator {
public:
    explicit CallSketch(bool takesTiles) : takesTiles_(takesTiles) {}
    const std::string& GetText() const { return text_; }

    unsigned int GetPowers() const override {
        return kGradients | kClipPaths | kLayers | kBlendModes | kMasks | kFilters;
    }
    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& info) override {
        Add("page " + Number(info.width * kPx) + "x" + Number(info.height * kPx) +
            (info.title.empty() ? "" : " " + std::string(info.title)));
        return Open();
    }
    int BeginGroup(const ORVPrintGroup& group) override {
        Add("group" + Named("#", group.id) + Named("->", group.linkURL) + Named("->#", group.linkElementId));
        return Open();
    }
    int EndGroup() override { return Close(); }
    int BeginClip(const ORVMathBox2D& box) override {
        Add("clip " + Box(box));
        return Open();
    }
    int EndClip() override { return Close(); }
    int BeginClipPath(const ORVPrintClipPath& clip) override {
        Add("clip path " + BoxOf(clip.path, clip.toPage) + (clip.evenOdd ? " evenodd" : ""));
        return Open();
    }
    int EndClipPath() override { return Close(); }
    int BeginLayer(const ORVPrintLayer& layer) override {
        Add("layer " + Number(layer.opacity) +
            (layer.blend == ORVPrintBlendMode::kNormal
                 ? ""
                 : " blend " + std::to_string(static_cast<int>(layer.blend))));
        return Open();
    }
    int EndLayer() override { return Close(); }
    int BeginMask(const ORVPrintMask& mask) override {
        constexpr const char* kKinds[] = {"mask by light ", "mask by opacity ", "mask by linear light "};
        Add(kKinds[static_cast<std::size_t>(mask.kind)] + Box(mask.box));
        return Open();
    }
    int EndMask() override { return Close(); }
    int BeginFilter(const ORVPrintFilter& filter) override {
        Add("filter" + WriteSvgFilter(filter, {-1e3, 1e3, -1e3, 1e3}));
        return Open();
    }
    int EndFilter() override { return Close(); }
    int BeginFilterInput() override {
        Add("input");
        return Open();
    }
    int EndFilterInput() override { return Close(); }
    int BeginTiles(const ORVPrintTiles& tiles) override {
        if (!takesTiles_) return kNoTiles;
        const std::string kind = tiles.isHeavy ? "heavy tiles " : "mixed tiles ";
        Add((tiles.isPlain ? "tiles " : kind + std::to_string(tiles.key) + ": ") + Box(tiles.tile) +
            " every " + Number(tiles.xStep * kPx) + "," + Number(tiles.yStep * kPx) + " from " +
            Point(tiles.toPage({0.0, 0.0})) + " on " + Box(tiles.shown));
        return Open();
    }
    int EndTiles() override { return Close(); }
    int DrawShape(const ORVPrintShape& shape) override {
        Add(BoxOf(shape.path, shape.toPage) + Paints(shape.fill, shape.stroke, shape.toPage));
        return 1;
    }
    int DrawText(const ORVPrintText& text) override {
        Add("\"" + std::string(text.text) + "\" " + Point(text.toPage({0.0, 0.0})) +
            Paints(text.fill, text.stroke, text.toPage));
        return 1;
    }
    int DrawImage(const ORVPrintImage& image) override {
        Add("image " + Point(image.toPage({0.0, 0.0})) + " " + Point(image.toPage({1.0, 1.0})));
        return 1;
    }
    int EndPage() override { return Close(); }
    int EndDocument() override { return 1; }

private:
    static std::string Named(const char* mark, std::string_view text) {
        return text.empty() ? "" : " " + (mark + std::string(text));
    }
    static std::string BoxOf(const ORVPrintPath& path, const ORVMathAffine2D& toPage) {
        ORVMathBox2D box;
        for (const ORVMathPoint2D& point : path.points) box.Add(toPage(point));
        return Box(box);
    }
    static std::string Paints(const ORVPrintFill* fill, const ORVPrintStroke* stroke,
                              const ORVMathAffine2D& toPage) {
        std::string text;
        if (fill)
            text += " fill " + (fill->gradient ? Gradient(*fill->gradient) : Colour(fill->colour)) +
                    (fill->evenOdd ? " evenodd" : "");
        if (!stroke) return text;
        const double scale = std::sqrt(std::fabs(toPage.Determinant())) * kPx;
        text += " stroke " + (stroke->gradient ? Gradient(*stroke->gradient) : Colour(stroke->colour)) + " " +
                Number(stroke->width * scale);
        for (const double dash : stroke->dashes) text += " -" + Number(dash * scale);
        if (stroke->dashOffset != 0.0) text += " from " + Number(stroke->dashOffset * scale);
        return text;
    }
    void Add(const std::string& line) { text_ += std::string(2 * depth_, ' ') + line + "\n"; }
    int Open() {
        ++depth_;
        return 1;
    }
    int Close() {
        --depth_;
        return 1;
    }

    const bool takesTiles_;
    std::string text_;
    std::size_t depth_ = 0;
};

}  // namespace

std::string SketchCalls(const std::string& document, bool takesTiles) {
    const ORVRef<ORVPrintInput> input(new ORVPrintInputMemoryStream(document));
    ORVPrintSVG2Interpreter interpreter(input.get());
    CallSketch sketch(takesTiles);
    const ORVPrintParameters parameters;
    const int result = interpreter.Print(&sketch, parameters);
    return result == 1 ? sketch.GetText() : sketch.GetText() + "result " + std::to_string(result) + "\n";
}

std::string SketchContent(const std::string& content, bool takesTiles) {
    const std::string text = SketchCalls(
        "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
        "width='100' height='100'>" +
            content + "</svg>",
        takesTiles);
    const std::string page = "page 100x100\n";
    if (!text.starts_with(page)) return text;
    // Removes the page and its indentation.
    std::string lines;
    for (std::size_t start = page.size(); start < text.size();) {
        const std::size_t end = text.find('\n', start);
        const std::string line = text.substr(start, end - start);
        lines += (line.starts_with("  ") ? line.substr(2) : line) + "\n";
        start = end + 1;
    }
    return lines;
}
