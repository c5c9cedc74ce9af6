// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "generators/common/export.h"
#include "platform/print/ORVPrintGenerator.h"

/// Joins several drawings into one document: passes all calls to a generator, but begins and ends its
/// document once and numbers the pages consecutively. Identifiers of different drawings are kept distinct.
class ORV_GENERATORS_EXPORT ORVGeneratorSequence final : public ORVPrintGenerator {
public:
    /// The document gets the title of the first drawing.
    /// @param target     must outlive the sequence
    /// @param pageCount  pages of the whole document, 0 if not known yet
    ORVGeneratorSequence(ORVPrintGenerator& target, unsigned int pageCount)
        : target_(target), pageCount_(pageCount) {}

    unsigned int GetPageCount() const { return pages_; }  ///< pages begun so far

    /// Ends the document if one was begun. @return the target's result; 1 if there was nothing to end
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
    /// The identifier in the joined document for one of the current drawing.
    std::string NameOf(std::string_view id) const;

    ORVPrintGenerator& target_;
    const unsigned int pageCount_;
    bool begun_ = false;
    unsigned int drawings_ = 0;
    unsigned int pages_ = 0;
};
