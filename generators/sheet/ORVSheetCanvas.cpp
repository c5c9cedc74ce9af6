#include "generators/sheet/ORVSheetCanvas.h"

#include "generators/common/generator_status.h"

const ORVPrintFill* ORVSheetCanvas::ConvertFill(const ORVPrintFill* fill, bool isText) {
    if (!fill || !ink_.ChangesColours()) return fill;
    fill_ = *fill;
    if (fill->pattern) {
        fill_.pattern = &ink_.ConvertPattern(*fill->pattern);
        // Of a pattern's colour only the opacity counts.
        fill_.colour = ink_.ConvertLine({0, 0, 0, fill->colour.opacity});
    } else if (isText) {
        fill_.colour = ink_.ConvertLine(fill->colour);
    } else if (!ink_.ConvertArea(fill_.colour)) {
        return nullptr;
    }
    return &fill_;
}

const ORVPrintStroke* ORVSheetCanvas::ConvertStroke(const ORVPrintStroke* stroke) {
    if (!stroke || !ink_.ChangesColours()) return stroke;
    stroke_ = *stroke;
    stroke_.colour = ink_.ConvertLine(stroke->colour);
    return &stroke_;
}

int ORVSheetCanvas::BeginClip(const ORVMathBox2D& box) {
    return target_.BeginClip(ORVCallMapper::Map(Map(), box));
}

int ORVSheetCanvas::BeginSymbol(const ORVPrintSymbol& symbol) {
    const ORVMathAffine2D toPage = Map() * symbol.toPage;
    if (!ORVCallMapper::IsUsable(toPage)) return kSymbolKnown;  // here it shows nothing
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
    const auto placed = ORVCallMapper::Map(Map(), {ink_.ConvertPicture(image.image), image.toPage, image.id});
    return placed ? target_.DrawImage(*placed) : kGeneratorDone;
}
