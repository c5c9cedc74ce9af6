// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/common/ORVCallMapper.h"
#include "generators/sheet/ORVInk.h"
#include "platform/print/ORVPrintGenerator.h"

/// Draws page content at its position on a sheet, in the inks of the device. Calls for pages and documents
/// refer to the sheet and are passed on unchanged.
///
/// Masks keep their colours, which are not visible. Content of filters keeps its colours too; additional
/// filter steps convert the result. In black and white, the opacity of a layer is applied to the colours
/// inside it, so that areas become black or white or are left out, and lines stay black.
class ORVSheetCanvas final : public ORVPrintGenerator {
public:
    ORVSheetCanvas(ORVPrintGenerator& target, const ORVInk& ink) : target_(target), ink_(ink) {}

    /// Sets the transformation of the content that follows.
    void SetMap(const ORVMathAffine2D& toSheet) { toSheet_ = toSheet; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override { return target_.BeginDocument(info); }
    int BeginPage(const ORVPrintPageInfo& info) override { return target_.BeginPage(info); }
    int BeginGroup(const ORVPrintGroup& group) override { return target_.BeginGroup(group); }
    int EndGroup() override { return target_.EndGroup(); }
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override { return target_.EndClip(); }
    unsigned int GetPowers() const override { return target_.GetPowers(); }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override { return target_.EndClipPath(); }
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    int BeginFilter(const ORVPrintFilter& filter) override;
    int EndFilter() override;
    int BeginFilterInput() override;
    int EndFilterInput() override;
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int EndSymbol() override;
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override { return target_.EndPage(); }
    int EndDocument() override { return target_.EndDocument(); }

private:
    /// Content of a symbol is in the symbol's own coordinates.
    const ORVMathAffine2D& Map() const { return openSymbols_ == 0 ? toSheet_ : kAsItIs; }
    bool Converts() const { return openMasks_ == 0 && ink_.ChangesColours(); }
    /// Adds steps that convert the result of a filter to the inks.
    void AddInkSteps(std::vector<ORVPrintFilterStep>& steps) const;
    const ORVPrintFill* ConvertFill(const ORVPrintFill* fill, bool isText);
    const ORVPrintStroke* ConvertStroke(const ORVPrintStroke* stroke);
    /// Multiplies the colour's opacity by those of the open layers.
    ORVPrintColour Dim(ORVPrintColour colour) const;
    /// Replaces a gradient by one in the inks. @return false if it is to be left out
    bool ConvertGradient(const ORVPrintGradient*& gradient, bool isArea, ORVPrintGradient& storage,
                         std::vector<ORVPrintGradientStop>& stops) const;

    static constexpr ORVMathAffine2D kAsItIs{};
    ORVPrintGenerator& target_;
    ORVInk ink_;
    ORVMathAffine2D toSheet_;
    unsigned int openSymbols_ = 0, openMasks_ = 0;
    std::vector<bool> filtersConvert_;  // for each open filter: whether it converts its result
    // Accumulated opacities of the open layers, applied to colours.
    std::vector<double> opacities_;
    ORVCallMapper mapper_;
    ORVPrintFill fill_;
    ORVPrintStroke stroke_;
    ORVPrintGradient fillGradient_, strokeGradient_;
    std::vector<ORVPrintGradientStop> fillStops_, strokeStops_;
};
