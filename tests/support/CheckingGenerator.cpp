// SPDX-License-Identifier: Apache-2.0
#include "tests/support/CheckingGenerator.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

std::string CheckingGenerator::GetFault() const {
    if (!fault_.empty()) return fault_;
    return hasFailed_ || open_.empty() ? "" : "not everything was ended";
}

int CheckingGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    Expect(open_.empty(), "a document within a document");
    return Enter(Part::kDocument, target_ ? target_->BeginDocument(info) : 1);
}

int CheckingGenerator::BeginPage(const ORVPrintPageInfo& info) {
    Expect(open_.size() == 1 && !hasFailed_, "a page out of place");
    Expect(info.width > 0.0 && info.height > 0.0 && std::isfinite(info.width) && std::isfinite(info.height),
           "a page without a usable size");
    return Enter(Part::kPage, target_ ? target_->BeginPage(info) : 1);
}

int CheckingGenerator::BeginGroup(const ORVPrintGroup& group) {
    ExpectPage();
    Expect(std::find(open_.begin(), open_.end(), Part::kSymbol) == open_.end(), "a group within a symbol");
    return Enter(Part::kGroup, target_ ? target_->BeginGroup(group) : 1);
}

int CheckingGenerator::EndGroup() {
    Leave(Part::kGroup);
    return Note(target_ ? target_->EndGroup() : 1);
}

int CheckingGenerator::BeginClip(const ORVMathBox2D& box) {
    ExpectPage();
    Expect(std::isfinite(box.xMin) && std::isfinite(box.yMin) && std::isfinite(box.xMax) &&
               std::isfinite(box.yMax),
           "a clip that is not finite");
    return Enter(Part::kClip, target_ ? target_->BeginClip(box) : 1);
}

int CheckingGenerator::EndClip() {
    Leave(Part::kClip);
    return Note(target_ ? target_->EndClip() : 1);
}

unsigned int CheckingGenerator::GetPowers() const {
    return target_ ? target_->GetPowers()
                   : kGradients | kClipPaths | kLayers | kBlendModes | kMasks | kFilters;
}

int CheckingGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    ExpectPage();
    CheckMap(clip.toPage);
    CheckPath(clip.path);
    return Enter(Part::kClipPath, target_ ? target_->BeginClipPath(clip) : 1);
}

int CheckingGenerator::EndClipPath() {
    Leave(Part::kClipPath);
    return Note(target_ ? target_->EndClipPath() : 1);
}

int CheckingGenerator::BeginLayer(const ORVPrintLayer& layer) {
    ExpectPage();
    Expect(layer.opacity >= 0.0 && layer.opacity <= 1.0, "a layer's opacity out of range");
    CheckBox(layer.box);
    const int result = Enter(Part::kLayer, target_ ? target_->BeginLayer(layer) : 1);
    expectsMask_ = result == 1 && layer.hasMask;
    return result;
}

int CheckingGenerator::EndLayer() {
    Leave(Part::kLayer);
    return Note(target_ ? target_->EndLayer() : 1);
}

int CheckingGenerator::BeginMask(const ORVPrintMask& mask) {
    Expect(expectsMask_ && !hasFailed_ && !open_.empty() && open_.back() == Part::kLayer,
           "a mask without its layer");
    expectsMask_ = false;
    CheckBox(mask.box);
    const int result = target_ ? target_->BeginMask(mask) : 1;
    return result == kSkipMask ? result : Enter(Part::kMask, result);
}

int CheckingGenerator::EndMask() {
    Leave(Part::kMask);
    return Note(target_ ? target_->EndMask() : 1);
}

int CheckingGenerator::BeginFilter(const ORVPrintFilter& filter) {
    ExpectPage();
    CheckMap(filter.toPage);
    Expect(filter.toPage.Determinant() != 0.0, "a filter without area");
    Expect(!filter.steps.empty(), "a filter without steps");
    for (std::size_t i = 0; i < filter.steps.size(); ++i)
        for (const int input : filter.steps[i].inputs)
            Expect(input >= ORVPrintFilterStep::kSourceAlpha && input < static_cast<int>(i),
                   "a step that takes a later one");
    const int result = Enter(Part::kFilter, target_ ? target_->BeginFilter(filter) : 1);
    inputsExpected_ = filter.inputCount;
    return result;
}

int CheckingGenerator::EndFilter() {
    Leave(Part::kFilter);
    return Note(target_ ? target_->EndFilter() : 1);
}

int CheckingGenerator::BeginFilterInput() {
    Expect(inputsExpected_ > 0 && !hasFailed_ && open_.back() == Part::kFilter,
           "an input without its filter");
    if (inputsExpected_ > 0) --inputsExpected_;
    pendingInputs_.push_back(std::exchange(inputsExpected_, 0));
    const int result = target_ ? target_->BeginFilterInput() : 1;
    if (result != kSkipInput) return Enter(Part::kFilterInput, result);
    inputsExpected_ = pendingInputs_.back();
    pendingInputs_.pop_back();
    return result;
}

int CheckingGenerator::EndFilterInput() {
    Leave(Part::kFilterInput);
    if (!pendingInputs_.empty()) {
        inputsExpected_ = pendingInputs_.back();
        pendingInputs_.pop_back();
    }
    return Note(target_ ? target_->EndFilterInput() : 1);
}

int CheckingGenerator::BeginSymbol(const ORVPrintSymbol& symbol) {
    ExpectPage();
    CheckMap(symbol.toPage);
    int result = kNoSymbols;
    if (target_) {
        result = target_->BeginSymbol(symbol);
    } else if (takesSymbols_) {
        const bool isKnown = std::find(symbols_.begin(), symbols_.end(), symbol.key) != symbols_.end();
        if (!isKnown) symbols_.push_back(symbol.key);
        result = isKnown ? kSymbolKnown : kDrawSymbol;
    }
    if (result == kDrawSymbol) return Enter(Part::kSymbol, result);
    if (result != kSymbolKnown && result != kNoSymbols) hasFailed_ = true;
    return result;
}

int CheckingGenerator::EndSymbol() {
    Leave(Part::kSymbol);
    return Note(target_ ? target_->EndSymbol() : 1);
}

int CheckingGenerator::DrawShape(const ORVPrintShape& shape) {
    ExpectPage();
    CheckMap(shape.toPage);
    CheckPath(shape.path);
    CheckFill(shape.fill);
    CheckStroke(shape.stroke);
    return Note(target_ ? target_->DrawShape(shape) : 1);
}

int CheckingGenerator::DrawText(const ORVPrintText& text) {
    ExpectPage();
    CheckMap(text.toPage);
    CheckFill(text.fill);
    CheckStroke(text.stroke);
    if (text.clip) CheckPath(*text.clip);
    for (const ORVGlyphRun& run : text.layout.runs) {
        Expect(std::isfinite(run.size) && std::isfinite(run.expansion), "a text size that is not finite");
        for (const ORVGlyph& glyph : run.glyphs)
            Expect(std::isfinite(glyph.x) && std::isfinite(glyph.y) && std::isfinite(glyph.advance),
                   "a glyph whose place is not finite");
    }
    return Note(target_ ? target_->DrawText(text) : 1);
}

int CheckingGenerator::DrawImage(const ORVPrintImage& image) {
    ExpectPage();
    CheckMap(image.toPage);
    return Note(target_ ? target_->DrawImage(image) : 1);
}

int CheckingGenerator::EndPage() {
    Leave(Part::kPage);
    return Note(target_ ? target_->EndPage() : 1);
}

// Called in every case; parts left open by a failure are discarded.
int CheckingGenerator::EndDocument() {
    Expect(!open_.empty() && (hasFailed_ || open_.size() == 1), "the end of a document with open parts");
    open_.clear();
    return Note(target_ ? target_->EndDocument() : 1);
}

int CheckingGenerator::Enter(Part part, int result) {
    if (result == 1) open_.push_back(part);
    return Note(result);
}

void CheckingGenerator::Leave(Part part) {
    Expect(!open_.empty() && open_.back() == part && !hasFailed_, "an end without its beginning");
    Expect(!expectsMask_, "a layer without its mask");
    Expect(inputsExpected_ == 0, "a filter without its inputs");
    if (!open_.empty()) open_.pop_back();
}

void CheckingGenerator::Expect(bool condition, const char* fault) {
    if (!condition && fault_.empty()) fault_ = fault;
}

void CheckingGenerator::ExpectPage() {
    Expect(open_.size() >= 2 && !hasFailed_, "a drawing outside of a page, or after a failure");
    Expect(!expectsMask_, "a layer without its mask");
    Expect(inputsExpected_ == 0, "a filter without its inputs");
}

void CheckingGenerator::CheckMap(const ORVMathAffine2D& map) {
    Expect(map.IsFinite(), "a map that is not finite");
}

void CheckingGenerator::CheckPath(const ORVPrintPath& path) {
    for (const ORVMathPoint2D& p : path.points)
        Expect(std::isfinite(p.x) && std::isfinite(p.y), "a point that is not finite");
}

void CheckingGenerator::CheckBox(const ORVMathBox2D& box) {
    Expect(box.IsEmpty() || std::isfinite(box.xMax - box.xMin + box.yMax - box.yMin),
           "a box that is not finite");
}

void CheckingGenerator::CheckGradient(const ORVPrintGradient* gradient) {
    if (!gradient) return;
    CheckMap(gradient->toPage);
    Expect(gradient->toPage.Determinant() != 0.0, "a gradient without area");
    Expect(gradient->stops.size() >= 2, "a gradient of one colour");
    double last = 0.0;
    for (const ORVPrintGradientStop& stop : gradient->stops) {
        Expect(stop.offset >= last && stop.offset <= 1.0, "stops out of order");
        last = stop.offset;
    }
    const bool isRadial = gradient->kind == ORVPrintGradient::Kind::kRadial;
    const bool differ =
        gradient->start != gradient->end || (isRadial && gradient->startRadius != gradient->endRadius);
    Expect(differ && gradient->startRadius >= 0.0 && gradient->endRadius >= 0.0, "a gradient without course");
}

void CheckingGenerator::CheckFill(const ORVPrintFill* fill) {
    if (!fill) return;
    if (fill->pattern) CheckMap(fill->patternToPage);
    CheckGradient(fill->gradient);
}

void CheckingGenerator::CheckStroke(const ORVPrintStroke* stroke) {
    if (!stroke) return;
    CheckGradient(stroke->gradient);
    Expect(stroke->dashOffset >= 0.0 && std::isfinite(stroke->dashOffset), "dashes that begin nowhere");
    Expect(stroke->width > 0.0 && std::isfinite(stroke->width),
           "a line width that is not positive and finite");
    Expect(std::isfinite(stroke->miterLimit), "a miter limit that is not finite");
    for (const double dash : stroke->dashes)
        Expect(dash >= 0.0 && std::isfinite(dash), "a dash that is not finite or negative");
}

int CheckingGenerator::Note(int result) {
    if (result != 1) hasFailed_ = true;
    return result;
}
