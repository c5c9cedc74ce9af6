// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "generators/common/export.h"
#include "platform/print/ORVPrintGenerator.h"

/// Lets several drawings come out as one document: passes everything on to a generator, but begins and ends
/// its document once and numbers pages through. Identifiers of different drawings are kept apart.
class ORV_GENERATORS_EXPORT ORVGeneratorSequence final : public ORVPrintGenerator {
public:
    /// The first drawing's title becomes the document's.
    /// @param target     must outlive the sequence
    /// @param pageCount  of the whole document, 0 when it is not known yet
    ORVGeneratorSequence(ORVPrintGenerator& target, unsigned int pageCount)
        : target_(target), pageCount_(pageCount) {}

    unsigned int GetPageCount() const { return pages_; }  ///< pages begun so far

    /// Ends the document, if one was begun. @return what the target returned, 1 when there was nothing to end
    [[nodiscard]] int Finish();

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override { return target_.EndGroup(); }
    int BeginClip(const ORVMathBox2D& box) override { return target_.BeginClip(box); }
    int EndClip() override { return target_.EndClip(); }
    unsigned int GetPowers() const override { return target_.GetPowers(); }
    int BeginClipPath(const ORVPrintClipPath& clip) override { return target_.BeginClipPath(clip); }
    int EndClipPath() override { return target_.EndClipPath(); }
    int BeginLayer(const ORVPrintLayer& layer) override { return target_.BeginLayer(layer); }
    int EndLayer() override { return target_.EndLayer(); }
    int BeginMask(const ORVPrintMask& mask) override { return target_.BeginMask(mask); }
    int EndMask() override { return target_.EndMask(); }
    int BeginFilter(const ORVPrintFilter& filter) override { return target_.BeginFilter(filter); }
    int EndFilter() override { return target_.EndFilter(); }
    int BeginFilterInput() override { return target_.BeginFilterInput(); }
    int EndFilterInput() override { return target_.EndFilterInput(); }
    int BeginSymbol(const ORVPrintSymbol& symbol) override { return target_.BeginSymbol(symbol); }
    int BeginTiles(const ORVPrintTiles& tiles) override { return target_.BeginTiles(tiles); }
    int EndTiles() override { return target_.EndTiles(); }
    int EndSymbol() override { return target_.EndSymbol(); }
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override { return target_.EndPage(); }
    int EndDocument() override { return 1; }

private:
    /// What an identifier of the present drawing is called in the document.
    std::string NameOf(std::string_view id) const;

    ORVPrintGenerator& target_;
    const unsigned int pageCount_;
    bool begun_ = false;
    unsigned int drawings_ = 0;
    unsigned int pages_ = 0;
};
