// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "generators/common/generator_powers.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

class ORVOutput;

/// Writes each page as an SVG document: shapes, text as text, embedded images, groups with their identifiers,
/// links. The size is stated in millimetres; coordinates are user units of 1/90 inch. The document has no
/// external resources and no scripts.
class ORVSvgGenerator final : public ORVPrintGenerator {
public:
    /// @param output  receives one part per page; must outlive the generator
    explicit ORVSvgGenerator(ORVOutput& output);
    ~ORVSvgGenerator() override;

    /// The error, if any. Errors of the output are reported by the output itself.
    const ORVFailure& GetFailure() const;
    const std::string& GetError() const { return GetFailure().text; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override { return kAllPowers | kContentLayers; }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override { return EndClip(); }
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    int BeginFilter(const ORVPrintFilter& filter) override;
    int EndFilter() override;
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int EndSymbol() override;
    int BeginTiles(const ORVPrintTiles& tiles) override;
    int EndTiles() override;
    bool KeepsIdentifiers() const override { return true; }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    struct State;
    std::unique_ptr<State> state_;
};
