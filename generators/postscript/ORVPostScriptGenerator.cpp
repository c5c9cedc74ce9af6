// SPDX-License-Identifier: Apache-2.0
#include "generators/postscript/ORVPostScriptGenerator.h"

#include <cairo-ps.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <exception>
#include <optional>
#include <type_traits>

#include "generators/cairo/ORVCairoCanvas.h"
#include "generators/cairo/cairo_handles.h"
#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/common/gradient_measures.h"
#include "generators/postscript/dsc_header.h"
#include "generators/postscript/postscript_module.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/system/ORVTemporaryData.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

constexpr double kPointsPerUserUnit = 72.0 / 90.0;
// Maximum page size in points: that of PDF, to which PostScript is often converted.
constexpr double kLargestSide = 14'400.0;
constexpr double kLeastResolution = 300.0, kGreatestResolution = 1200.0;
// Maximum pixels of an image for a page that is entirely transparent.
constexpr double kImagePixels = 5e7;
// cairo makes an image of every transparent part and draws the whole page for each. Beyond this number of
// parts, they are joined into one image.
constexpr std::size_t kMostImages = 256;

/// Dots per inch for images of transparent parts.
double FallbackResolution(double asked, double width, double height) {
    const double wanted = std::clamp(asked, kLeastResolution, kGreatestResolution);
    return std::min(wanted, std::sqrt(kImagePixels * 72.0 * 72.0 / (width * height)));
}

/// Formats a time in seconds since 1970 for a DSC comment; empty if its year does not have four digits.
std::string DateText(std::int64_t time) {
    const auto seconds = static_cast<std::time_t>(time);
    std::tm parts{};
    std::array<char, 32> text;
    if (!gmtime_r(&seconds, &parts) || parts.tm_year < -1900 || parts.tm_year > 8099) return {};
    return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

bool IsTransparent(const ORVPrintFill* fill, const ORVPrintStroke* stroke) {
    if (fill && fill->gradient && !ORVIsOpaque(*fill->gradient)) return true;
    if (stroke && stroke->gradient && !ORVIsOpaque(*stroke->gradient)) return true;
    return (fill && !fill->gradient &&
            (fill->colour.opacity < 255 || (fill->pattern && fill->pattern->HasAlpha()))) ||
           (stroke && !stroke->gradient && stroke->colour.opacity < 255);
}

/// Text of an error, unless it is one of the output.
std::string TextOf(cairo_status_t status) {
    // cairo keeps pages in a temporary file until the last one is known.
    if (status == CAIRO_STATUS_TEMP_FILE_ERROR)
        return "no temporary file can be made; is TMPDIR a folder that may be written?";
    if (status == CAIRO_STATUS_WRITE_ERROR) return "the temporary file cannot be written; is the disk full?";
    return cairo_status_to_string(status);
}

ORVFailure FailureOf(cairo_status_t status) {
    if (status == CAIRO_STATUS_NO_MEMORY) return ORVFailure::OutOfMemory();
    return ORVFailure::Of(ORVFailureReason::kNotDrawn, TextOf(status));
}

}  // namespace

struct ORVPostScriptGenerator::State {
    State(ORVOutput& sink, const ORVFormatOptions& formatOptions, bool isEncapsulated)
        : output(sink), options(formatOptions), encapsulated(isEncapsulated) {}

    /// Checks whether all pages so far were stored in cairo's temporary file. @return 1, or a generator
    /// status
    int CheckPages() {
        switch (ORVTemporaryData::GetLoss()) {
            case ORVTemporaryData::Loss::kNone: return kGeneratorDone;
            case ORVTemporaryData::Loss::kPastLimit: output.EndPastLimit(); return kOutputFailed;
            case ORVTemporaryData::Loss::kNotWritten: break;
        }
        failure = FailureOf(CAIRO_STATUS_WRITE_ERROR);
        return kDrawingFailed;
    }
    int Check(int result) {
        if (result == kGeneratorDone) return result;
        if (!output.GetError().empty()) return kOutputFailed;
        if (!failure && context && cairo_status(context.get()) != CAIRO_STATUS_SUCCESS)
            failure = FailureOf(cairo_status(context.get()));
        if (!failure) failure = ORVFailure::OutOfMemory();
        return result;
    }
    static cairo_status_t Write(void* state, const unsigned char* bytes, unsigned int size) {
        try {
            const bool isGood =
                static_cast<State*>(state)->filter->Write({reinterpret_cast<const char*>(bytes), size});
            return isGood ? CAIRO_STATUS_SUCCESS : CAIRO_STATUS_WRITE_ERROR;
        } catch (const std::exception&) {
            return CAIRO_STATUS_NO_MEMORY;  // exceptions must not pass through cairo
        }
    }
    int Open(double width, double height);
    int Close();
    void NoteTransparent(const ORVMathBox2D& box);

    ORVOutput& output;
    const ORVFormatOptions options;
    const bool encapsulated;
    DscHeader header;
    std::optional<DscHeaderFilter> filter;
    ORVCairoCanvas canvas;
    CairoSurface surface;  // of the open part
    CairoContext context;
    double sheetWidth = 0.0, sheetHeight = 0.0;  // of the open page, in points
    std::size_t transparentParts = 0;            // of the open page
    ORVMathBox2D transparentBox;                 // their bounding box, in points
    ORVMathBox2D joinedBox;                      // area already joined into one image, in points
    std::string documentTitle;
    ORVFailure failure;
};

/// Records a transparent part of the page, in page coordinates. If there are many, cairo is made to join
/// them: a shape around them that it takes for transparent, but that changes nothing, is drawn.
void ORVPostScriptGenerator::State::NoteTransparent(const ORVMathBox2D& box) {
    if (box.IsEmpty()) return;
    const auto cut = [](double userUnits, double side) {
        return std::clamp(userUnits * kPointsPerUserUnit, 0.0, side);
    };
    ORVMathBox2D& all = transparentBox;
    all.Add({cut(box.xMin, sheetWidth), cut(box.yMin, sheetHeight)});
    all.Add({cut(box.xMax, sheetWidth), cut(box.yMax, sheetHeight)});
    const bool isJoined = all.xMin >= joinedBox.xMin && all.xMax <= joinedBox.xMax &&
                          all.yMin >= joinedBox.yMin && all.yMax <= joinedBox.yMax;
    if (++transparentParts <= kMostImages || isJoined) return;
    // With a margin, so that this happens only a few times.
    const double marginX = 0.05 * sheetWidth, marginY = 0.05 * sheetHeight;
    joinedBox.Add({std::max(all.xMin - marginX, 0.0), std::max(all.yMin - marginY, 0.0)});
    joinedBox.Add({std::min(all.xMax + marginX, sheetWidth), std::min(all.yMax + marginY, sheetHeight)});
    cairo_t* cr = context.get();
    cairo_save(cr);
    cairo_reset_clip(cr);
    cairo_identity_matrix(cr);
    cairo_set_operator(cr, CAIRO_OPERATOR_ADD);
    cairo_set_source_rgb(cr, 0.0, 0.0, 0.0);
    cairo_rectangle(cr, joinedBox.xMin, joinedBox.yMin, joinedBox.xMax - joinedBox.xMin,
                    joinedBox.yMax - joinedBox.yMin);
    cairo_fill(cr);
    cairo_restore(cr);
}

/// Begins a part.
int ORVPostScriptGenerator::State::Open(double width, double height) {
    if (output.BeginPart() != 1) return kOutputFailed;
    header.width = header.height = 0.0;
    filter.emplace(output, header);
    surface.reset(cairo_ps_surface_create_for_stream(Write, this, width, height));
    cairo_ps_surface_restrict_to_level(surface.get(), CAIRO_PS_LEVEL_3);
    cairo_ps_surface_set_eps(surface.get(), encapsulated ? 1 : 0);
    context.reset(cairo_create(surface.get()));
    return Check(cairo_status(context.get()) == CAIRO_STATUS_SUCCESS ? kGeneratorDone : kDrawingFailed);
}

/// Ends the part.
int ORVPostScriptGenerator::State::Close() {
    canvas.SetTarget(nullptr, 1.0);
    int result = Check(cairo_status(context.get()) == CAIRO_STATUS_SUCCESS ? kGeneratorDone : kDrawingFailed);
    context.reset();
    cairo_surface_finish(surface.get());
    if (result == kGeneratorDone && cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) {
        if (!failure) failure = FailureOf(cairo_surface_status(surface.get()));
        result = kDrawingFailed;
    }
    surface.reset();
    if (const int pages = CheckPages(); pages != kGeneratorDone) result = pages;
    const bool isWritten = filter->Finish();
    filter.reset();
    const bool isClosed = output.EndPart() == 1;
    return isWritten && isClosed && output.GetError().empty() ? result : static_cast<int>(kOutputFailed);
}

ORVPostScriptGenerator::ORVPostScriptGenerator(ORVOutput& output, const ORVFormatOptions& options,
                                               bool encapsulated)
    : state_(std::make_unique<State>(output, options, encapsulated)) {}

ORVPostScriptGenerator::~ORVPostScriptGenerator() = default;

const ORVFailure& ORVPostScriptGenerator::GetFailure() const { return state_->failure; }

int ORVPostScriptGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    state_->documentTitle = info.title;
    state_->header.title = info.title;
    state_->header.encapsulated = state_->encapsulated;
    if (state_->options.creationTime) state_->header.creationDate = DateText(*state_->options.creationTime);
    return kGeneratorDone;
}

int ORVPostScriptGenerator::BeginPage(const ORVPrintPageInfo& info) {
    State& state = *state_;
    const double width = info.width * kPointsPerUserUnit, height = info.height * kPointsPerUserUnit;
    if (!(width <= kLargestSide) || !(height <= kLargestSide)) {
        state.failure = ORVFailure::Of(
            ORVFailureReason::kNotDrawn,
            "page " + std::to_string(info.number) +
                " is larger than PostScript output may be (5080 mm); fit it to a sheet with --paper");
        return kPageTooLarge;
    }
    // Sheets have whole points: A4, for example, is 595 by 842. The bounding box of an EPS page must contain
    // all of it.
    const double sheetWidth = std::max(1.0, state.encapsulated ? std::ceil(width - 1e-6) : std::round(width));
    const double sheetHeight =
        std::max(1.0, state.encapsulated ? std::ceil(height - 1e-6) : std::round(height));
    if (!state.surface) {
        if (const int result = state.Open(sheetWidth, sheetHeight); result != kGeneratorDone) return result;
    } else if (state.encapsulated) {
        return kDrawingFailed;
    }
    if (state.encapsulated) {
        state.header.title = info.title.empty() ? state.documentTitle : std::string(info.title);
        state.header.width = width;
        state.header.height = height;
    } else {
        state.header.width = std::max(state.header.width, sheetWidth);
        state.header.height = std::max(state.header.height, sheetHeight);
    }
    state.sheetWidth = sheetWidth;
    state.sheetHeight = sheetHeight;
    state.transparentParts = 0;
    state.transparentBox = state.joinedBox = {};
    cairo_surface_t* surface = state.surface.get();
    cairo_ps_surface_set_size(surface, sheetWidth, sheetHeight);
    const double resolution = FallbackResolution(state.options.dotsPerInch, sheetWidth, sheetHeight);
    cairo_surface_set_fallback_resolution(surface, resolution, resolution);
    cairo_ps_surface_dsc_begin_page_setup(surface);
    // Pages are upright as read, including wide ones: viewers and converters rotate those marked as
    // landscape.
    cairo_ps_surface_dsc_comment(surface, "%%PageOrientation: Portrait");
    state.canvas.SetTarget(state.context.get(), kPointsPerUserUnit);
    return state.Check(state.canvas.Status());
}

int ORVPostScriptGenerator::BeginClip(const ORVMathBox2D& box) {
    return state_->Check(state_->canvas.BeginClip(box));
}

int ORVPostScriptGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    return state_->Check(state_->canvas.BeginClipPath(clip));
}

int ORVPostScriptGenerator::EndClip() { return state_->Check(state_->canvas.EndClip()); }

int ORVPostScriptGenerator::DrawShape(const ORVPrintShape& shape) {
    if (state_->context && IsTransparent(shape.fill, shape.stroke)) {
        ORVMathBox2D box;
        for (const ORVMathPoint2D& p : shape.path.points) box.Add(shape.toPage(p));
        state_->NoteTransparent(box);
    }
    return state_->Check(state_->canvas.DrawShape(shape));
}

int ORVPostScriptGenerator::DrawText(const ORVPrintText& text) {
    if (state_->context && IsTransparent(text.fill, text.stroke)) {
        ORVMathBox2D box;
        for (const double x : {0.0, text.layout.advance})
            for (const double y : {-text.layout.descent, text.layout.ascent}) box.Add(text.toPage({x, y}));
        state_->NoteTransparent(box);
    }
    return state_->Check(state_->canvas.DrawText(text));
}

int ORVPostScriptGenerator::DrawImage(const ORVPrintImage& image) {
    if (state_->context && image.image.HasAlpha()) {
        ORVMathBox2D box;
        for (const double x : {0.0, 1.0})
            for (const double y : {0.0, 1.0}) box.Add(image.toPage({x, y}));
        state_->NoteTransparent(box);
    }
    return state_->Check(state_->canvas.DrawImage(image));
}

int ORVPostScriptGenerator::EndPage() {
    State& state = *state_;
    if (!state.context) return kDrawingFailed;
    cairo_show_page(state.context.get());
    int result = state.Check(state.canvas.Status());
    if (const int pages = state.CheckPages(); pages != kGeneratorDone) result = pages;
    state.canvas.SetTarget(nullptr, 1.0);
    if (result != kGeneratorDone || !state.encapsulated) return result;
    return state.Close();
}

int ORVPostScriptGenerator::EndDocument() {
    return state_->surface ? state_->Close() : static_cast<int>(kGeneratorDone);
}

extern "C" __attribute__((visibility("default"))) ORVFormatGenerator* orvCreatePostScriptGenerator(
    ORVOutput& output, const ORVFormatOptions& options, bool encapsulated) {
    try {
        return new ORVPostScriptGenerator(output, options, encapsulated);
    } catch (const std::exception&) {
        return nullptr;
    }
}
static_assert(std::is_same_v<decltype(&orvCreatePostScriptGenerator), PostScriptFactory>);
