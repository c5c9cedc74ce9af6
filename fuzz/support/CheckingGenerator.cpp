#include "fuzz/support/CheckingGenerator.h"

#include <algorithm>
#include <cmath>

#include "fuzz/support/FuzzTarget.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

void CheckPath(const ORVPrintPath& path) {
    for (const ORVMathPoint2D& p : path.points) Require(std::isfinite(p.x) && std::isfinite(p.y));
}

void CheckStroke(const ORVPrintStroke* stroke) {
    if (!stroke) return;
    Require(stroke->width > 0.0 && std::isfinite(stroke->width) && std::isfinite(stroke->miterLimit));
    for (const double dash : stroke->dashes) Require(std::isfinite(dash) && dash >= 0.0);
}

void CheckBox(const ORVMathBox2D& box) {
    Require(std::isfinite(box.xMin) && std::isfinite(box.yMin) && std::isfinite(box.xMax) &&
            std::isfinite(box.yMax));
}

}  // namespace

CheckingGenerator::~CheckingGenerator() { Require(hasFailed_ || open_.empty()); }

int CheckingGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    Require(open_.empty());
    return Enter(Part::kDocument, target_ ? target_->BeginDocument(info) : 1);
}

int CheckingGenerator::BeginPage(const ORVPrintPageInfo& info) {
    Require(open_.size() == 1);
    Require(info.width > 0.0 && info.height > 0.0 && std::isfinite(info.width) && std::isfinite(info.height));
    return Enter(Part::kPage, target_ ? target_->BeginPage(info) : 1);
}

int CheckingGenerator::BeginGroup(const ORVPrintGroup& group) {
    RequirePage();
    Require(open_.back() != Part::kSymbol);
    return Enter(Part::kGroup, target_ ? target_->BeginGroup(group) : 1);
}

int CheckingGenerator::EndGroup() {
    Leave(Part::kGroup);
    return Note(target_ ? target_->EndGroup() : 1);
}

int CheckingGenerator::BeginClip(const ORVMathBox2D& box) {
    RequirePage();
    CheckBox(box);
    return Enter(Part::kClip, target_ ? target_->BeginClip(box) : 1);
}

int CheckingGenerator::EndClip() {
    Leave(Part::kClip);
    return Note(target_ ? target_->EndClip() : 1);
}

int CheckingGenerator::BeginSymbol(const ORVPrintSymbol& symbol) {
    RequirePage();
    Require(symbol.toPage.IsFinite());
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
    RequirePage();
    Require(shape.toPage.IsFinite());
    CheckPath(shape.path);
    CheckStroke(shape.stroke);
    return Note(target_ ? target_->DrawShape(shape) : 1);
}

int CheckingGenerator::DrawText(const ORVPrintText& text) {
    RequirePage();
    Require(text.toPage.IsFinite());
    CheckStroke(text.stroke);
    if (text.clip) CheckPath(*text.clip);
    return Note(target_ ? target_->DrawText(text) : 1);
}

int CheckingGenerator::DrawImage(const ORVPrintImage& image) {
    RequirePage();
    Require(image.toPage.IsFinite());
    return Note(target_ ? target_->DrawImage(image) : 1);
}

int CheckingGenerator::EndPage() {
    Leave(Part::kPage);
    return Note(target_ ? target_->EndPage() : 1);
}

// Comes in every case: what a failure left open is over.
int CheckingGenerator::EndDocument() {
    Require(!open_.empty() && (hasFailed_ || open_.size() == 1));
    open_.clear();
    return Note(target_ ? target_->EndDocument() : 1);
}

int CheckingGenerator::Enter(Part part, int result) {
    if (result == 1) open_.push_back(part);
    return Note(result);
}

void CheckingGenerator::Leave(Part part) {
    Require(!open_.empty() && open_.back() == part && !hasFailed_);
    open_.pop_back();
}

// Within a page, and nothing failed before.
void CheckingGenerator::RequirePage() const { Require(open_.size() >= 2 && !hasFailed_); }

int CheckingGenerator::Note(int result) {
    if (result != 1) hasFailed_ = true;
    return result;
}
