// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/ORVSheetGenerator.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "generators/common/exception_text.h"
#include "generators/common/generator_status.h"
#include "generators/sheet/poster_marks.h"
#include "platform/print/ORVPrintPath.h"

namespace {

/// Runs code that allocates memory.
template <class Action>
int Guard(ORVFailure& failure, Action action) {
    try {
        return action();
    } catch (const std::exception&) {
        ORVNameException(failure);
        return kDrawingFailed;
    }
}

ORVMathBox2D WholePage(double width, double height) {
    ORVMathBox2D box;
    box.Add({0.0, 0.0});
    box.Add({width, height});
    return box;
}

constexpr std::size_t kKeptBytes = std::size_t{64} << 20U;  // for converted images

}  // namespace

ORVSheetGenerator::ORVSheetGenerator(ORVPrintGenerator& target, const ORVSheetOptions& options)
    : target_(target),
      options_(options),
      canvas_(target, ORVInk(options.colourMode, kKeptBytes, options.keepsGreys)) {}

int ORVSheetGenerator::Refuse(const std::string& error) {
    failure_ = ORVFailure::Of(ORVFailureReason::kNotDrawn, error);
    return kPageTooLarge;
}

int ORVSheetGenerator::RefuseSize(unsigned int page) {
    return Refuse("page " + std::to_string(page) + " would be too small or too large at this scale");
}

int ORVSheetGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    documentPages_ = info.pageCount;
    ORVPrintDocumentInfo sheets = info;
    if (options_.layout.isPoster) sheets.pageCount = 0;
    const unsigned int perSheet = std::max(1U, options_.layout.pagesPerSheet);
    if (sheets.pageCount > 0) sheets.pageCount = (sheets.pageCount - 1) / perSheet + 1;
    return target_.BeginDocument(sheets);
}

int ORVSheetGenerator::BeginPage(const ORVPrintPageInfo& info) {
    isPageOpen_ = true;
    pageWidth_ = info.width;
    pageHeight_ = info.height;
    return Guard(failure_, [&] {
        if (options_.layout.pagesPerSheet > 1) return BeginInCell(info);
        if (options_.layout.isPoster) return BeginPoster(info);
        return BeginOnSheet(info);
    });
}

int ORVSheetGenerator::OpenSheet(ORVPrintPageInfo info, double width, double height) {
    info.number = ++sheets_;
    info.width = width;
    info.height = height;
    return target_.BeginPage(info);
}

int ORVSheetGenerator::OpenPlace(const ORVPlacedPage& page) {
    pageScale_ = page.scale;
    canvas_.SetMap(page.ToSheet());
    isClipped_ = page.isCut;
    const int result = isClipped_ ? target_.BeginClip(page.place) : kGeneratorDone;
    return result == kGeneratorDone ? PaintBackground() : result;
}

int ORVSheetGenerator::PaintBackground() {
    if (options_.background.opacity == 0) return kGeneratorDone;
    ORVPrintPath page;
    page.MoveTo({0.0, 0.0});
    page.LineTo({pageWidth_, 0.0});
    page.LineTo({pageWidth_, pageHeight_});
    page.LineTo({0.0, pageHeight_});
    page.Close();
    const ORVPrintFill fill{.colour = options_.background};
    return canvas_.DrawShape({page, {}, &fill, nullptr});
}

int ORVSheetGenerator::ClosePlace() { return isClipped_ ? target_.EndClip() : kGeneratorDone; }

int ORVSheetGenerator::BeginOnSheet(const ORVPrintPageInfo& info) {
    const auto sheet = ORVLayOutPage(options_.layout, info.width, info.height);
    if (!sheet) return RefuseSize(info.number);
    ORVPrintPageInfo placed = info;
    placed.trim = ORVCallMapper::Map(sheet->page.ToSheet(), info.trim);
    if (const int result = OpenSheet(placed, sheet->width, sheet->height); result != kGeneratorDone)
        return result;
    return OpenPlace(sheet->page);
}

int ORVSheetGenerator::BeginInCell(const ORVPrintPageInfo& info) {
    if (cells_.empty()) {
        const ORVSheetOfMany sheet = ORVLayOutCells(options_.layout, info.width, info.height);
        if (sheet.cells.empty()) return RefuseSize(info.number);
        ORVPrintPageInfo first = info;
        first.trim = {};
        first.label = {};
        if (const int result = OpenSheet(first, sheet.width, sheet.height); result != kGeneratorDone)
            return result;
        cells_ = sheet.cells;
        usedCells_ = 0;
    }
    const auto page = ORVPlaceInCell(options_.layout, cells_[usedCells_], info.width, info.height);
    if (!page) return RefuseSize(info.number);
    ++usedCells_;
    return OpenPlace(*page);
}

int ORVSheetGenerator::BeginPoster(const ORVPrintPageInfo& info) {
    poster_ = ORVLayOutPoster(options_.layout, info.width, info.height);
    if (!poster_) return RefuseSize(info.number);
    if (!(sheets_ + poster_->SheetCount() <= kMostPosterSheets))
        return Refuse(
            "page " + std::to_string(info.number) +
            " would take too many sheets (at most 10000 in all); use larger paper or a smaller scale");
    page_ = {info.number, std::string(info.id), std::string(info.title), std::string(info.description)};
    pageScale_ = poster_->scale;
    if (poster_->SheetCount() > 1.0) {
        recording_.emplace();
        return kGeneratorDone;
    }
    return BeginPosterSheet(0, 0);
}

int ORVSheetGenerator::BeginPosterSheet(unsigned int row, unsigned int column) {
    const ORVPlacedPage placed = poster_->Sheet(row, column);
    std::string label = ORVPoster::Label(row, column);
    if (documentPages_ != 1) label = std::to_string(page_.number) + "-" + label;
    ORVPrintPageInfo info;
    if (row == 0 && column == 0) {
        info.id = page_.id;
        info.title = page_.title;
        info.description = page_.description;
    }
    info.trim = placed.place;
    info.label = label;
    int result = OpenSheet(info, poster_->width, poster_->height);
    if (result == kGeneratorDone) result = ORVDrawPosterMarks(target_, *poster_, row, column, label);
    return result == kGeneratorDone ? OpenPlace(placed) : result;
}

int ORVSheetGenerator::DrawPosterSheets() {
    recording_->Finish(WholePage(poster_->pageWidth, poster_->pageHeight));
    const auto rows = static_cast<unsigned int>(poster_->rows);
    const auto columns = static_cast<unsigned int>(poster_->columns);
    for (unsigned int row = 0; row < rows; ++row) {
        for (unsigned int column = 0; column < columns; ++column) {
            const ORVPlacedPage placed = poster_->Sheet(row, column);
            // The area of the page that this sheet shows.
            ORVMathBox2D shown;
            shown.Add({(placed.place.xMin - placed.left) / placed.scale,
                       (placed.place.yMin - placed.top) / placed.scale});
            shown.Add({(placed.place.xMax - placed.left) / placed.scale,
                       (placed.place.yMax - placed.top) / placed.scale});
            if (column == 0) recording_->SelectBand(shown.yMin, shown.yMax);
            int result = BeginPosterSheet(row, column);
            if (result == kGeneratorDone) result = recording_->Replay(canvas_, shown);
            if (result == kGeneratorDone) result = EndSheet();
            if (result != kGeneratorDone) return result;
        }
    }
    return kGeneratorDone;
}

int ORVSheetGenerator::EndSheet() {
    const int result = ClosePlace();
    return result == kGeneratorDone ? target_.EndPage() : result;
}

int ORVSheetGenerator::EndPage() {
    if (recording_) {
        const int result = Guard(failure_, [&] { return DrawPosterSheets(); });
        recording_.reset();
        isPageOpen_ = result != kGeneratorDone;
        return result;
    }
    isPageOpen_ = false;
    if (usedCells_ < cells_.size()) return ClosePlace();
    cells_.clear();
    usedCells_ = 0;
    return EndSheet();
}

int ORVSheetGenerator::EndDocument() {
    int result = kGeneratorDone;
    // The last sheet may have unused cells. If a page was aborted, its sheet also stays open.
    if (!cells_.empty() && !isPageOpen_) result = target_.EndPage();
    cells_.clear();
    recording_.reset();
    const int ended = target_.EndDocument();
    return result == kGeneratorDone ? ended : result;
}

template <class Call>
int ORVSheetGenerator::Pass(Call call) {
    ORVPrintGenerator& content = recording_ ? static_cast<ORVPrintGenerator&>(*recording_) : canvas_;
    return Guard(failure_, [&] { return call(content); });
}

const ORVPrintStroke* ORVSheetGenerator::Widen(const ORVPrintStroke* stroke, const ORVMathAffine2D& toPage) {
    if (!stroke || (options_.strokeScale == 1.0 && options_.leastLineWidth == 0.0)) return stroke;
    double width = stroke->width * options_.strokeScale;
    // A non-uniform scale yields several line widths: their geometric mean is used.
    const double scale = std::sqrt(std::fabs(toPage.Determinant())) * pageScale_;
    if (scale > 0.0) width = std::max(width, options_.leastLineWidth / scale);
    if (!(width > 0.0) || !std::isfinite(width)) return stroke;
    stroke_ = *stroke;
    stroke_.width = width;
    return &stroke_;
}

int ORVSheetGenerator::BeginGroup(const ORVPrintGroup& group) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginGroup(group); });
}

int ORVSheetGenerator::EndGroup() {
    return Pass([](ORVPrintGenerator& to) { return to.EndGroup(); });
}

int ORVSheetGenerator::BeginClip(const ORVMathBox2D& box) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginClip(box); });
}

int ORVSheetGenerator::EndClip() {
    return Pass([](ORVPrintGenerator& to) { return to.EndClip(); });
}

int ORVSheetGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginClipPath(clip); });
}

int ORVSheetGenerator::EndClipPath() {
    return Pass([](ORVPrintGenerator& to) { return to.EndClipPath(); });
}

int ORVSheetGenerator::BeginLayer(const ORVPrintLayer& layer) {
    ORVPrintLayer widened = layer;
    // Widened lines may extend beyond the measured box of the layer.
    const bool isWider = options_.strokeScale > 1.0 || options_.leastLineWidth > 0.0;
    if (isWider && !layer.box.IsEmpty()) {
        widened.box.Add({0.0, 0.0});
        widened.box.Add({pageWidth_, pageHeight_});
    }
    return Pass([&](ORVPrintGenerator& to) { return to.BeginLayer(widened); });
}

int ORVSheetGenerator::EndLayer() {
    return Pass([](ORVPrintGenerator& to) { return to.EndLayer(); });
}

int ORVSheetGenerator::BeginMask(const ORVPrintMask& mask) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginMask(mask); });
}

int ORVSheetGenerator::EndMask() {
    return Pass([](ORVPrintGenerator& to) { return to.EndMask(); });
}

int ORVSheetGenerator::BeginFilter(const ORVPrintFilter& filter) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginFilter(filter); });
}

int ORVSheetGenerator::EndFilter() {
    return Pass([](ORVPrintGenerator& to) { return to.EndFilter(); });
}

int ORVSheetGenerator::BeginFilterInput() {
    return Pass([](ORVPrintGenerator& to) { return to.BeginFilterInput(); });
}

int ORVSheetGenerator::EndFilterInput() {
    return Pass([](ORVPrintGenerator& to) { return to.EndFilterInput(); });
}

int ORVSheetGenerator::BeginSymbol(const ORVPrintSymbol& symbol) {
    // The minimum line width depends on the place where the symbol is shown.
    if (options_.leastLineWidth > 0.0) return kNoSymbols;
    return Pass([&](ORVPrintGenerator& to) { return to.BeginSymbol(symbol); });
}

int ORVSheetGenerator::EndSymbol() {
    return Pass([](ORVPrintGenerator& to) { return to.EndSymbol(); });
}

int ORVSheetGenerator::DrawShape(const ORVPrintShape& shape) {
    const ORVPrintStroke* stroke = Widen(shape.stroke, shape.toPage);
    return Pass([&](ORVPrintGenerator& to) {
        return to.DrawShape({shape.path, shape.toPage, shape.fill, stroke, shape.id});
    });
}

int ORVSheetGenerator::DrawText(const ORVPrintText& text) {
    const ORVPrintStroke* stroke = Widen(text.stroke, text.toPage);
    return Pass([&](ORVPrintGenerator& to) {
        return to.DrawText({text.layout, text.text, text.toPage, text.fill, stroke, text.clip, text.id});
    });
}

int ORVSheetGenerator::DrawImage(const ORVPrintImage& image) {
    return Pass([&](ORVPrintGenerator& to) { return to.DrawImage(image); });
}
