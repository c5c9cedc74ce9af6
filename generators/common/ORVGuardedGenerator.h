// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// Wraps a format's generator and turns exceptions, such as those for lack of memory or threads, into
/// kDrawingFailed. A generator that has thrown is not called again: all later calls fail at once.
class ORVGuardedGenerator final : public ORVPrintGenerator {
public:
    /// @param target  must outlive this object
    explicit ORVGuardedGenerator(ORVPrintGenerator& target) : target_(target) {}

    /// The exception caught, as an error; empty if there was none.
    const ORVFailure& GetFailure() const { return failure_; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override { return target_.GetPowers(); }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override;
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    int BeginFilter(const ORVPrintFilter& filter) override;
    int EndFilter() override;
    int BeginFilterInput() override;
    int EndFilterInput() override;
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int BeginTiles(const ORVPrintTiles& tiles) override;
    int EndTiles() override;
    int EndSymbol() override;
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    template <class Call>
    int Pass(Call call);

    ORVPrintGenerator& target_;
    bool threw_ = false;
    ORVFailure failure_;
};
