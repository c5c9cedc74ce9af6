// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/ORVSvgGenerator.h"

#include <optional>
#include <string>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/svg/svg_page.h"

namespace {

// Maximum page size in user units, about 280 metres: readers use limited precision.
constexpr double kLargestSide = 1e6;

}  // namespace

struct ORVSvgGenerator::State {
    explicit State(ORVOutput& sink) : output(sink) {}

    int Check() const { return page && page->IsGood() ? kGeneratorDone : kOutputFailed; }
    /// Calls `change` with the open page; `change` returns false if the call is out of order.
    template <class Change>
    int Do(Change change) {
        return page && change(*page) ? Check() : static_cast<int>(kDrawingFailed);
    }
    /// Calls `draw` with the open page.
    template <class Draw>
    int DrawOn(Draw draw) {
        if (!page) return kDrawingFailed;
        draw(*page);
        if (page->IsOutOfMemory()) failure = ORVFailure::OutOfMemory();
        return Check();
    }

    ORVOutput& output;
    std::string documentTitle;
    ORVFailure failure;
    std::optional<SvgPage> page;  // the open page
};

ORVSvgGenerator::ORVSvgGenerator(ORVOutput& output) : state_(std::make_unique<State>(output)) {}

ORVSvgGenerator::~ORVSvgGenerator() = default;

const ORVFailure& ORVSvgGenerator::GetFailure() const { return state_->failure; }

int ORVSvgGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    state_->documentTitle = info.title;
    return kGeneratorDone;
}

int ORVSvgGenerator::BeginPage(const ORVPrintPageInfo& info) {
    if (state_->page) return kDrawingFailed;
    if (!(info.width <= kLargestSide) || !(info.height <= kLargestSide)) {
        state_->failure =
            ORVFailure::Of(ORVFailureReason::kNotDrawn,
                           "page " + std::to_string(info.number) +
                               " is larger than SVG output may be (282 m); fit it to a sheet with --paper");
        return kPageTooLarge;
    }
    if (state_->output.BeginPart() != 1) return kOutputFailed;
    state_->page.emplace(state_->output, info, state_->documentTitle);
    return state_->Check();
}

int ORVSvgGenerator::BeginGroup(const ORVPrintGroup& group) {
    return state_->DrawOn([&](SvgPage& page) { page.BeginGroup(group); });
}

int ORVSvgGenerator::EndGroup() {
    return state_->Do([](SvgPage& page) { return page.EndGroup(); });
}

int ORVSvgGenerator::BeginClip(const ORVMathBox2D& box) {
    return state_->DrawOn([&](SvgPage& page) { page.BeginClip(box); });
}

int ORVSvgGenerator::EndClip() {
    return state_->Do([](SvgPage& page) { return page.EndClip(); });
}

int ORVSvgGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    return state_->DrawOn([&](SvgPage& page) { page.BeginClipPath(clip); });
}

int ORVSvgGenerator::BeginLayer(const ORVPrintLayer& layer) {
    return state_->DrawOn([&](SvgPage& page) { page.BeginLayer(layer); });
}

int ORVSvgGenerator::EndLayer() {
    return state_->Do([](SvgPage& page) { return page.EndLayer(); });
}

int ORVSvgGenerator::BeginMask(const ORVPrintMask& mask) {
    return state_->DrawOn([&](SvgPage& page) { page.BeginMask(mask); });
}

int ORVSvgGenerator::EndMask() {
    return state_->Do([](SvgPage& page) { return page.EndMask(); });
}

int ORVSvgGenerator::BeginFilter(const ORVPrintFilter& filter) {
    return state_->DrawOn([&](SvgPage& page) { page.BeginFilter(filter); });
}

int ORVSvgGenerator::EndFilter() {
    return state_->Do([](SvgPage& page) { return page.EndFilter(); });
}

int ORVSvgGenerator::BeginSymbol(const ORVPrintSymbol& symbol) {
    return state_->page ? state_->page->BeginSymbol(symbol) : static_cast<int>(kNoSymbols);
}

int ORVSvgGenerator::EndSymbol() {
    return state_->Do([](SvgPage& page) { return page.EndSymbol(); });
}

int ORVSvgGenerator::BeginTiles(const ORVPrintTiles& tiles) {
    return state_->page ? state_->page->BeginTiles(tiles) : static_cast<int>(kNoTiles);
}

int ORVSvgGenerator::EndTiles() {
    return state_->Do([](SvgPage& page) { return page.EndTiles(); });
}

int ORVSvgGenerator::DrawShape(const ORVPrintShape& shape) {
    return state_->DrawOn([&](SvgPage& page) { page.DrawShape(shape); });
}

int ORVSvgGenerator::DrawText(const ORVPrintText& text) {
    return state_->DrawOn([&](SvgPage& page) { page.DrawText(text); });
}

int ORVSvgGenerator::DrawImage(const ORVPrintImage& image) {
    const int result = state_->DrawOn([&](SvgPage& page) { page.DrawImage(image); });
    return state_->failure ? static_cast<int>(kDrawingFailed) : result;
}

int ORVSvgGenerator::EndPage() {
    if (!state_->page) return kDrawingFailed;
    const bool isWritten = state_->page->Finish();
    state_->page.reset();
    const bool isClosed = state_->output.EndPart() == 1;
    return isWritten && isClosed ? kGeneratorDone : kOutputFailed;
}

int ORVSvgGenerator::EndDocument() { return state_->page ? EndPage() : static_cast<int>(kGeneratorDone); }
