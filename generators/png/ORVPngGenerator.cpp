#include "generators/png/ORVPngGenerator.h"

#include <algorithm>
#include <cmath>

#include "generators/cairo/ORVCairoCanvas.h"
#include "generators/cairo/cairo_handles.h"
#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/png/png_writer.h"

namespace {

constexpr double kUserUnitsPerInch = 90.0;
// cairo's pictures are no wider or higher.
constexpr double kLargestSide = 32'767.0;

/// Pixels along a side: what is a whole number but for rounding stays that number.
double Pixels(double userUnits, double scale) { return std::max(1.0, std::ceil(userUnits * scale - 1e-6)); }

}  // namespace

struct ORVPngGenerator::State {
    State(ORVOutput& sink, double resolution) : output(sink), dotsPerInch(resolution) {}

    int Check(int result) {
        if (result == kGeneratorDone) return result;
        if (error.empty() && context && cairo_status(context.get()) != CAIRO_STATUS_SUCCESS)
            error = cairo_status_to_string(cairo_status(context.get()));
        if (error.empty()) error = "memory is spent";
        return result;
    }

    ORVOutput& output;
    const double dotsPerInch;
    ORVCairoCanvas canvas{ORVCairoCanvas::Medium::kPixels};
    CairoSurface surface;
    CairoContext context;
    std::string error;
};

ORVPngGenerator::ORVPngGenerator(ORVOutput& output, double dotsPerInch)
    : state_(std::make_unique<State>(output, dotsPerInch)) {}

ORVPngGenerator::~ORVPngGenerator() = default;

const std::string& ORVPngGenerator::GetError() const { return state_->error; }

int ORVPngGenerator::BeginDocument(const ORVPrintDocumentInfo& /*info*/) { return kGeneratorDone; }

int ORVPngGenerator::BeginPage(const ORVPrintPageInfo& info) {
    const double scale = state_->dotsPerInch / kUserUnitsPerInch;
    const double width = Pixels(info.width, scale), height = Pixels(info.height, scale);
    if (!(width <= kLargestSide) || !(height <= kLargestSide) ||
        width * height > static_cast<double>(kPixelLimit)) {
        state_->error =
            "page " + std::to_string(info.number) +
            " would have too many pixels (at most 32767 a side and 200 million in all); use a lower --dpi";
        return kPageTooLarge;
    }
    state_->surface.reset(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width), static_cast<int>(height)));
    state_->context.reset(cairo_create(state_->surface.get()));
    cairo_set_source_rgb(state_->context.get(), 1.0, 1.0, 1.0);
    cairo_paint(state_->context.get());
    state_->canvas.SetTarget(state_->context.get(), scale);
    return state_->Check(state_->canvas.Status());
}

int ORVPngGenerator::BeginClip(const ORVMathBox2D& box) {
    return state_->Check(state_->canvas.BeginClip(box));
}

int ORVPngGenerator::EndClip() { return state_->Check(state_->canvas.EndClip()); }

int ORVPngGenerator::DrawShape(const ORVPrintShape& shape) {
    return state_->Check(state_->canvas.DrawShape(shape));
}

int ORVPngGenerator::DrawText(const ORVPrintText& text) {
    return state_->Check(state_->canvas.DrawText(text));
}

int ORVPngGenerator::DrawImage(const ORVPrintImage& image) {
    return state_->Check(state_->canvas.DrawImage(image));
}

int ORVPngGenerator::EndPage() {
    state_->canvas.SetTarget(nullptr, 1.0);
    cairo_surface_t* surface = state_->surface.get();
    cairo_surface_flush(surface);
    if (state_->output.BeginPart() != 1) return kOutputFailed;
    const int written =
        WritePng(state_->output, cairo_image_surface_get_data(surface),
                 cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface),
                 static_cast<std::size_t>(cairo_image_surface_get_stride(surface)), state_->dotsPerInch,
                 state_->error);
    const bool closed = state_->output.EndPart() == 1;
    state_->context.reset();
    state_->surface.reset();
    if (!closed || !state_->output.GetError().empty()) return kOutputFailed;
    return written == 1 ? kGeneratorDone : kDrawingFailed;
}
