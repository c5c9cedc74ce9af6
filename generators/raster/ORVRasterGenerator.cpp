// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/ORVRasterGenerator.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <exception>
#include <thread>
#include <utility>

#include "generators/common/exception_text.h"
#include "generators/common/generator_status.h"
#include "generators/raster/band_pipeline.h"
#include "generators/raster/display_list.h"

namespace {

constexpr double kUserUnitsPerInch = 90.0;
// Minimum line width in pixels. With antialiasing, thin lines are drawn lighter, but stay visible; without
// it, a line less than a pixel wide would break up.
constexpr double kThinnestWithLevels = 0.25;
constexpr double kThinnestWithout = 1.0;

/// Size in pixels: rounded to nearest, but at least one.
double Pixels(double userUnits, double scale) { return std::max(1.0, std::round(userUnits * scale)); }

/// Number of threads to use. Each needs memory for bands, so the number of processors is not used without a
/// limit.
unsigned int ThreadCount(unsigned int wanted) {
    constexpr unsigned int kMostThreads = 64;
    if (wanted == 0) wanted = std::max(std::thread::hardware_concurrency(), 1U);
    return std::min(wanted, kMostThreads);
}

}  // namespace

struct ORVRasterGenerator::State {
    State(std::unique_ptr<ORVBandSink> to, const ORVRasterOptions& how) : sink(std::move(to)), options(how) {}

    /// Adds content to the display list. Lack of memory becomes an ordinary failure.
    template <class Note>
    int Try(Note note) {
        try {
            note();
            return kGeneratorDone;
        } catch (const std::exception&) {
            ORVNameException(failure);
            return kDrawingFailed;
        }
    }

    void Note(std::string text) { failure = ORVFailure::Of(ORVFailureReason::kNotDrawn, std::move(text)); }

    const std::unique_ptr<ORVBandSink> sink;
    const ORVRasterOptions options;
    DisplayList list;
    RasterPageInfo page;
    std::string title;
    ORVFailure failure;
    unsigned int pageCount = 0;
    std::uint64_t pixels = 0;  // of all pages so far, within the limit
    PaintBudget budget;        // shared by all pages
};

ORVRasterGenerator::ORVRasterGenerator(std::unique_ptr<ORVBandSink> sink, const ORVRasterOptions& options)
    : state_(std::make_unique<State>(std::move(sink), options)) {}

ORVRasterGenerator::~ORVRasterGenerator() = default;

const ORVFailure& ORVRasterGenerator::GetFailure() const {
    return state_->failure ? state_->failure : state_->sink->GetFailure();
}

int ORVRasterGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    state_->title = info.title;
    state_->pageCount = info.pageCount;
    state_->pixels = 0;
    state_->budget.Reset(state_->options.paintLimit);
    return kGeneratorDone;
}

int ORVRasterGenerator::BeginPage(const ORVPrintPageInfo& info) {
    const ORVRasterOptions& options = state_->options;
    const double scale = options.dotsPerInch / kUserUnitsPerInch;
    const double width = Pixels(info.width, scale), height = Pixels(info.height, scale);
    const bool isTooLong = !(width <= kLargestSide) || !(height <= kLargestSide);
    RasterPageInfo& page = state_->page;
    page.dotsPerInch = options.dotsPerInch;
    page.pageWidth = info.width;
    page.pageHeight = info.height;
    page.number = info.number;
    page.pageCount = state_->pageCount;
    page.title = state_->title;
    page.width = isTooLong ? 0 : static_cast<int>(width);
    page.height = isTooLong ? 0 : static_cast<int>(height);
    if (!isTooLong) state_->sink->FitPage(page);
    const std::uint64_t pixels =
        static_cast<std::uint64_t>(page.width) * static_cast<std::uint64_t>(page.height);
    if (isTooLong || pixels > options.pixelLimit) {
        state_->Note("page " + std::to_string(info.number) + " would have too many pixels (at most " +
                     std::to_string(static_cast<int>(kLargestSide)) + " a side and " +
                     std::to_string(options.pixelLimit) + " in all); use a lower --dpi or a smaller size");
        return kPageTooLarge;
    }
    if (pixels > options.outputPixelLimit - state_->pixels) {
        state_->Note("the pages to page " + std::to_string(info.number) +
                     " would have too many pixels (at most " + std::to_string(options.outputPixelLimit) +
                     " in all); use a lower --dpi or a smaller size");
        return kOutputTooLarge;
    }
    state_->pixels += pixels;
    state_->budget.Allow(pixels * PaintBudget::kPerPagePixel);
    page.bandRows =
        options.bandRows > 0 ? std::min(options.bandRows, page.height) : ORVRowsOfBand(page.width);
    const bool smooths = options.colourMode != ORVColourMode::kMono;
    return state_->Try([&] {
        state_->list.Begin(page.width, page.height, scale, smooths ? kThinnestWithLevels : kThinnestWithout,
                           smooths);
    });
}

int ORVRasterGenerator::BeginClip(const ORVMathBox2D& box) {
    return state_->Try([&] { state_->list.BeginClip(box); });
}

int ORVRasterGenerator::EndClip() {
    state_->list.EndClip();
    return kGeneratorDone;
}

int ORVRasterGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    return state_->Try([&] { state_->list.BeginClipPath(clip); });
}

int ORVRasterGenerator::BeginLayer(const ORVPrintLayer& layer) {
    return state_->Try([&] { state_->list.BeginLayer(layer); });
}

int ORVRasterGenerator::EndLayer() {
    return state_->Try([&] { state_->list.EndLayer(); });
}

int ORVRasterGenerator::BeginMask(const ORVPrintMask& mask) {
    return state_->Try([&] { state_->list.BeginMask(mask); });
}

int ORVRasterGenerator::EndMask() {
    return state_->Try([&] { state_->list.EndMask(); });
}

int ORVRasterGenerator::DrawShape(const ORVPrintShape& shape) {
    return state_->Try([&] { state_->list.AddShape(shape); });
}

int ORVRasterGenerator::DrawText(const ORVPrintText& text) {
    return state_->Try([&] { state_->list.AddText(text); });
}

int ORVRasterGenerator::DrawImage(const ORVPrintImage& image) {
    return state_->Try([&] { state_->list.AddImage(image); });
}

int ORVRasterGenerator::EndPage() {
    RasterPageInfo& page = state_->page;
    switch (state_->options.colourMode) {
        case ORVColourMode::kMono: page.pixels = RasterPixels::kBlack; break;
        case ORVColourMode::kGrey: page.pixels = RasterPixels::kGrey; break;
        case ORVColourMode::kColour:
            page.pixels = state_->sink->TakesGreyForColour() && state_->list.IsGrey() ? RasterPixels::kGrey
                                                                                      : RasterPixels::kRGB;
            break;
    }
    if (state_->options.isClear) page.pixels = RasterPixels::kClear;
    int status = state_->sink->BeginPage(page);
    if (status == kGeneratorDone)
        status = ORVDrawBands(state_->list, page, ThreadCount(state_->options.threads), state_->budget,
                              *state_->sink, state_->failure);
    if (status == kTooMuchToPaint)
        state_->Note(
            "the pages to page " + std::to_string(page.number) + " take too much painting (at most " +
            std::to_string(state_->options.paintLimit) +
            " pixels, besides a hundred for each of the pages'); use a lower --dpi or a smaller size");
    state_->list.Clear();
    const int ended = state_->sink->EndPage();
    return status == kGeneratorDone ? ended : status;
}

int ORVRasterGenerator::EndDocument() { return state_->sink->EndDocument(); }
