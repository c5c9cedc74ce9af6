// SPDX-License-Identifier: Apache-2.0
#include "generators/common/ORVGuardedGenerator.h"

#include <exception>

#include "generators/common/exception_text.h"
#include "generators/common/generator_status.h"

template <class Call>
int ORVGuardedGenerator::Pass(Call call) {
    if (threw_) return kDrawingFailed;
    try {
        return call(target_);
    } catch (const std::exception&) {
        threw_ = true;
        ORVNameException(failure_);
        return kDrawingFailed;
    }
}

int ORVGuardedGenerator::BeginDocument(const ORVPrintDocumentInfo& info) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginDocument(info); });
}

int ORVGuardedGenerator::BeginPage(const ORVPrintPageInfo& info) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginPage(info); });
}

int ORVGuardedGenerator::BeginGroup(const ORVPrintGroup& group) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginGroup(group); });
}

int ORVGuardedGenerator::EndGroup() {
    return Pass([](ORVPrintGenerator& to) { return to.EndGroup(); });
}

int ORVGuardedGenerator::BeginClip(const ORVMathBox2D& box) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginClip(box); });
}

int ORVGuardedGenerator::EndClip() {
    return Pass([](ORVPrintGenerator& to) { return to.EndClip(); });
}

int ORVGuardedGenerator::BeginClipPath(const ORVPrintClipPath& clip) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginClipPath(clip); });
}

int ORVGuardedGenerator::EndClipPath() {
    return Pass([](ORVPrintGenerator& to) { return to.EndClipPath(); });
}

int ORVGuardedGenerator::BeginLayer(const ORVPrintLayer& layer) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginLayer(layer); });
}

int ORVGuardedGenerator::EndLayer() {
    return Pass([](ORVPrintGenerator& to) { return to.EndLayer(); });
}

int ORVGuardedGenerator::BeginMask(const ORVPrintMask& mask) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginMask(mask); });
}

int ORVGuardedGenerator::EndMask() {
    return Pass([](ORVPrintGenerator& to) { return to.EndMask(); });
}

int ORVGuardedGenerator::BeginFilter(const ORVPrintFilter& filter) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginFilter(filter); });
}

int ORVGuardedGenerator::EndFilter() {
    return Pass([](ORVPrintGenerator& to) { return to.EndFilter(); });
}

int ORVGuardedGenerator::BeginFilterInput() {
    return Pass([](ORVPrintGenerator& to) { return to.BeginFilterInput(); });
}

int ORVGuardedGenerator::EndFilterInput() {
    return Pass([](ORVPrintGenerator& to) { return to.EndFilterInput(); });
}

int ORVGuardedGenerator::BeginSymbol(const ORVPrintSymbol& symbol) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginSymbol(symbol); });
}

int ORVGuardedGenerator::EndSymbol() {
    return Pass([](ORVPrintGenerator& to) { return to.EndSymbol(); });
}

int ORVGuardedGenerator::BeginTiles(const ORVPrintTiles& tiles) {
    return Pass([&](ORVPrintGenerator& to) { return to.BeginTiles(tiles); });
}

int ORVGuardedGenerator::EndTiles() {
    return Pass([](ORVPrintGenerator& to) { return to.EndTiles(); });
}

int ORVGuardedGenerator::DrawShape(const ORVPrintShape& shape) {
    return Pass([&](ORVPrintGenerator& to) { return to.DrawShape(shape); });
}

int ORVGuardedGenerator::DrawText(const ORVPrintText& text) {
    return Pass([&](ORVPrintGenerator& to) { return to.DrawText(text); });
}

int ORVGuardedGenerator::DrawImage(const ORVPrintImage& image) {
    return Pass([&](ORVPrintGenerator& to) { return to.DrawImage(image); });
}

int ORVGuardedGenerator::EndPage() {
    return Pass([](ORVPrintGenerator& to) { return to.EndPage(); });
}

int ORVGuardedGenerator::EndDocument() {
    return Pass([](ORVPrintGenerator& to) { return to.EndDocument(); });
}
