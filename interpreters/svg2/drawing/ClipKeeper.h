// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Passes calls to a generator and merges equal consecutive clips: a clip that is ended and begun again stays
/// open. Plots clip each of thousands of lines to the same outline.
class ClipKeeper final : public ORVPrintGenerator {
public:
    /// @param generator  must outlive this object
    explicit ClipKeeper(ORVPrintGenerator& generator) : generator_(generator) {}

    int BeginDocument(const ORVPrintDocumentInfo& info) override { return generator_.BeginDocument(info); }
    int BeginPage(const ORVPrintPageInfo& info) override { return generator_.BeginPage(info); }
    int BeginGroup(const ORVPrintGroup& group) override {
        return EndKept() ? generator_.BeginGroup(group) : status_;
    }
    int EndGroup() override { return EndKept() ? generator_.EndGroup() : status_; }
    int BeginClip(const ORVMathBox2D& box) override {
        return EndKept() ? generator_.BeginClip(box) : status_;
    }
    int EndClip() override { return EndKept() ? generator_.EndClip() : status_; }
    unsigned int GetPowers() const override { return generator_.GetPowers(); }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override;
    int BeginLayer(const ORVPrintLayer& layer) override {
        return EndKept() ? generator_.BeginLayer(layer) : status_;
    }
    int EndLayer() override { return EndKept() ? generator_.EndLayer() : status_; }
    int BeginMask(const ORVPrintMask& mask) override {
        return EndKept() ? generator_.BeginMask(mask) : status_;
    }
    int EndMask() override { return EndKept() ? generator_.EndMask() : status_; }
    int BeginSymbol(const ORVPrintSymbol& symbol) override {
        return EndKept() ? generator_.BeginSymbol(symbol) : status_;
    }
    int BeginTiles(const ORVPrintTiles& tiles) override {
        return EndKept() ? generator_.BeginTiles(tiles) : status_;
    }
    int EndTiles() override { return EndKept() ? generator_.EndTiles() : status_; }
    int EndSymbol() override { return EndKept() ? generator_.EndSymbol() : status_; }
    bool KeepsIdentifiers() const override { return generator_.KeepsIdentifiers(); }
    bool FollowsOrigins() const override { return generator_.FollowsOrigins(); }
    void NoteOrigin(const ORVPrintOrigin& origin) override { generator_.NoteOrigin(origin); }
    int DrawShape(const ORVPrintShape& shape) override {
        return EndKept() ? generator_.DrawShape(shape) : status_;
    }
    int DrawText(const ORVPrintText& text) override {
        return EndKept() ? generator_.DrawText(text) : status_;
    }
    int DrawImage(const ORVPrintImage& image) override {
        return EndKept() ? generator_.DrawImage(image) : status_;
    }
    int BeginFilter(const ORVPrintFilter& filter) override {
        return EndKept() ? generator_.BeginFilter(filter) : status_;
    }
    int EndFilter() override { return EndKept() ? generator_.EndFilter() : status_; }
    int BeginFilterInput() override { return EndKept() ? generator_.BeginFilterInput() : status_; }
    int EndFilterInput() override { return EndKept() ? generator_.EndFilterInput() : status_; }
    int EndPage() override { return EndKept() ? generator_.EndPage() : status_; }
    int EndDocument() override { return generator_.EndDocument(); }

private:
    /// A clip that is open in the generator.
    struct OpenClip {
        ORVPrintPath path;
        ORVMathAffine2D toPage;
        bool isEvenOdd = false;
    };

    /// Ends the clip that was kept open.
    /// @return false on failure; status_ holds the result
    bool EndKept() { return !isKept_ || EndInnermost(); }
    bool EndInnermost();
    bool IsInnermost(const ORVPrintClipPath& clip) const;

    ORVPrintGenerator& generator_;
    std::vector<OpenClip> open_;  // the first `depth_` are open; the others are kept to reuse their memory
    std::size_t depth_ = 0;
    bool isKept_ = false;  // the innermost clip was ended by the caller but is still open in the generator
    int status_ = 1;
};

}  // namespace svg2
