// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintGenerator.h"

/// Observes a print and can cancel it.
class PrintWatch {
public:
    PrintWatch() = default;
    virtual ~PrintWatch() = default;
    PrintWatch(const PrintWatch&) = delete;
    PrintWatch& operator=(const PrintWatch&) = delete;

    /// Whether to cancel the print. Called before every drawing call.
    virtual bool IsCancelled() = 0;
    /// Called after each page of the drawings.
    virtual void EndPage() = 0;
};

/// Passes all calls to a generator, and fails with kCancelled once the watch cancels.
class WatchedGenerator final : public ORVPrintGenerator {
public:
    static constexpr int kCancelled = -30;  ///< returned once the print is cancelled

    /// Both must outlive this object.
    WatchedGenerator(ORVPrintGenerator& target, PrintWatch& watch) : target_(target), watch_(watch) {}

    int BeginDocument(const ORVPrintDocumentInfo& info) override {
        return Pass(&Target::BeginDocument, info);
    }
    int BeginPage(const ORVPrintPageInfo& info) override { return Pass(&Target::BeginPage, info); }
    int BeginGroup(const ORVPrintGroup& group) override { return Pass(&Target::BeginGroup, group); }
    int EndGroup() override { return target_.EndGroup(); }
    int BeginClip(const ORVMathBox2D& box) override { return target_.BeginClip(box); }
    int EndClip() override { return target_.EndClip(); }
    unsigned int GetPowers() const override { return target_.GetPowers(); }
    int BeginClipPath(const ORVPrintClipPath& clip) override { return Pass(&Target::BeginClipPath, clip); }
    int EndClipPath() override { return target_.EndClipPath(); }
    int BeginLayer(const ORVPrintLayer& layer) override { return Pass(&Target::BeginLayer, layer); }
    int EndLayer() override { return target_.EndLayer(); }
    int BeginMask(const ORVPrintMask& mask) override { return Pass(&Target::BeginMask, mask); }
    int EndMask() override { return target_.EndMask(); }
    int BeginFilter(const ORVPrintFilter& filter) override { return Pass(&Target::BeginFilter, filter); }
    int EndFilter() override { return target_.EndFilter(); }
    int BeginFilterInput() override { return target_.BeginFilterInput(); }
    int EndFilterInput() override { return target_.EndFilterInput(); }
    int BeginSymbol(const ORVPrintSymbol& symbol) override { return Pass(&Target::BeginSymbol, symbol); }
    int EndSymbol() override { return target_.EndSymbol(); }
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override { return Pass(&Target::DrawShape, shape); }
    int DrawText(const ORVPrintText& text) override { return Pass(&Target::DrawText, text); }
    int DrawImage(const ORVPrintImage& image) override { return Pass(&Target::DrawImage, image); }
    int EndPage() override;
    int EndDocument() override { return target_.EndDocument(); }

private:
    using Target = ORVPrintGenerator;

    template <class What>
    int Pass(int (ORVPrintGenerator::*call)(const What&), const What& what) {
        return watch_.IsCancelled() ? kCancelled : (target_.*call)(what);
    }

    ORVPrintGenerator& target_;
    PrintWatch& watch_;
};
