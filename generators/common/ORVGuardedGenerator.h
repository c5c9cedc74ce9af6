// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// Stands before a format's generator: what is thrown there, because memory or threads run out, becomes
/// kDrawingFailed. A generator that threw is in no state to go on; from then on, every call fails without it.
class ORVGuardedGenerator final : public ORVPrintGenerator {
public:
    /// @param target  must outlive this object
    explicit ORVGuardedGenerator(ORVPrintGenerator& target) : target_(target) {}

    /// What went wrong; nothing when nothing was thrown.
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
