// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_parts.h"

#include <algorithm>
#include <utility>

bool PdfParts::BeginSymbol(const ORVPrintSymbol& symbol) {
    if (const auto known = forms_.find(symbol.key); known != forms_.end()) {
        GetTop().DrawForm(known->second, symbol.toPage);
        return false;
    }
    Part& part = parts_.emplace_back(Part{Kind::kSymbol, symbol});
    part.content.emplace(document_);
    ++openSymbols_;
    return true;
}

void PdfParts::BeginTiles(const ORVPrintTiles& tiles) {
    Part& part = parts_.emplace_back(Part{Kind::kTiles, {}, tiles});
    part.content.emplace(document_);
    ++openTiles_;
}

void PdfParts::BeginLayer(const ORVPrintLayer& layer) {
    PdfContent& below = GetTop();
    Part& part = parts_.emplace_back(
        Part{Kind::kLayer, {}, {}, layer, {layer.opacity, layer.blend, layer.isIsolated}});
    part.content.emplace(below, layer.box, false);
}

bool PdfParts::BeginMask(const ORVPrintMask& mask) {
    if (parts_.empty() || parts_.back().kind != Kind::kLayer || !parts_.back().layer.hasMask) return false;
    Part& layer = parts_.back();
    layer.layer.hasMask = false;  // a layer has at most one mask
    // The layer begins again, limited to what the mask shows.
    layer.content->FinishGroup();
    const ORVMathBox2D visible = GetNextToTop().VisiblePart(layer.layer.box);
    layer.layer.box = {std::max(visible.xMin, mask.box.xMin), std::min(visible.xMax, mask.box.xMax),
                       std::max(visible.yMin, mask.box.yMin), std::min(visible.yMax, mask.box.yMax)};
    layer.paint.maskKind = mask.kind;
    PdfContent& below = GetNextToTop();
    Part& part = parts_.emplace_back(Part{Kind::kMask});
    part.content.emplace(below, layer.layer.box, true);
    ++openMasks_;
    return true;
}

bool PdfParts::End(Kind kind) {
    if (parts_.empty() || parts_.back().kind != kind) return false;
    switch (kind) {
        case Kind::kSymbol: FinishSymbol(); break;
        case Kind::kTiles: FinishTiles(); break;
        case Kind::kLayer: FinishLayer(); break;
        case Kind::kMask: FinishMask(); break;
    }
    return true;
}

void PdfParts::EndAll() {
    while (!parts_.empty()) End(parts_.back().kind);
}

void PdfParts::FinishSymbol() {
    const ORVPrintSymbol symbol = parts_.back().symbol;
    const PdfForm form = parts_.back().content->FinishForm();
    parts_.pop_back();
    --openSymbols_;
    forms_.emplace(symbol.key, form);
    GetTop().DrawForm(form, symbol.toPage);
}

void PdfParts::FinishTiles() {
    const ORVPrintTiles tiles = parts_.back().tiles;
    const PdfForm cell = parts_.back().content->FinishTile(tiles, GetNextToTop());
    parts_.pop_back();
    --openTiles_;
    GetTop().DrawTiles(cell, tiles.shown);
}

void PdfParts::FinishLayer() {
    const PdfLayerPaint paint = parts_.back().paint;
    const ORVMathBox2D box = parts_.back().layer.box;
    const unsigned int group = parts_.back().content->FinishGroup(paint.isIsolated);
    parts_.pop_back();
    GetTop().DrawGroup(group, box, paint);
}

void PdfParts::FinishMask() {
    const unsigned int group = parts_.back().content->FinishGroup();
    parts_.pop_back();
    --openMasks_;
    Part& layer = parts_.back();
    layer.paint.mask = group;
    // A mask that shows nothing hides the whole layer.
    layer.content.emplace(GetNextToTop(), group != 0 ? layer.layer.box : ORVMathBox2D(), false);
}
