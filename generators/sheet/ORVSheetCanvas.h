#pragma once

#include "generators/common/ORVCallMapper.h"
#include "generators/sheet/ORVInk.h"
#include "platform/print/ORVPrintGenerator.h"

/// Draws what a page shows in the page's place on a sheet, and in the inks of the device. Pages and documents
/// are the sheet's: those calls go through as they are.
class ORVSheetCanvas final : public ORVPrintGenerator {
public:
    ORVSheetCanvas(ORVPrintGenerator& target, const ORVInk& ink) : target_(target), ink_(ink) {}

    /// Where content goes from now on.
    void SetMap(const ORVMathAffine2D& toSheet) { toSheet_ = toSheet; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override { return target_.BeginDocument(info); }
    int BeginPage(const ORVPrintPageInfo& info) override { return target_.BeginPage(info); }
    int BeginGroup(const ORVPrintGroup& group) override { return target_.BeginGroup(group); }
    int EndGroup() override { return target_.EndGroup(); }
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override { return target_.EndClip(); }
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int EndSymbol() override;
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override { return target_.EndPage(); }
    int EndDocument() override { return target_.EndDocument(); }

private:
    /// Content of a symbol has the symbol's own coordinates.
    const ORVMathAffine2D& Map() const { return openSymbols_ == 0 ? toSheet_ : kAsItIs; }
    const ORVPrintFill* ConvertFill(const ORVPrintFill* fill, bool isText);
    const ORVPrintStroke* ConvertStroke(const ORVPrintStroke* stroke);

    static constexpr ORVMathAffine2D kAsItIs{};
    ORVPrintGenerator& target_;
    ORVInk ink_;
    ORVMathAffine2D toSheet_;
    unsigned int openSymbols_ = 0;
    ORVCallMapper mapper_;
    ORVPrintFill fill_;
    ORVPrintStroke stroke_;
};
