// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

class ORVOutput;

/// Writes PDF: vectors, gradients, searchable text, JPEG files unchanged, layers and masks, links and their
/// targets; repeated content is stored once. Pages may differ in size; a user unit is 0.8 point. Equal calls
/// produce equal bytes.
class ORVPdfGenerator final : public ORVPrintGenerator {
public:
    /// @param output        receives the document as its only part, from a thread of the generator; must
    ///                      outlive the generator, and must not be used by others between BeginDocument and
    ///                      the end of EndDocument
    /// @param creationTime  creation time stated in the document, in seconds since 1970, if any
    explicit ORVPdfGenerator(ORVOutput& output, std::optional<std::int64_t> creationTime = std::nullopt);
    ~ORVPdfGenerator() override;

    /// The error, if any. Errors of the output are reported by the output itself.
    const ORVFailure& GetFailure() const;
    const std::string& GetError() const { return GetFailure().text; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override {
        return kGradients | kClipPaths | kLayers | kBlendModes | kMasks | kContentLayers | kUnseenText;
    }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int EndSymbol() override;
    int BeginTiles(const ORVPrintTiles& tiles) override;
    int EndTiles() override;
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    struct State;
    std::unique_ptr<State> state_;
};
