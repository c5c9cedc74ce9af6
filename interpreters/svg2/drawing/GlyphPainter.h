// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "interpreters/svg2/drawing/DrawingBudget.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/glyph_paint.h"

namespace svg2 {

/// Draws a colour glyph, which its font paints with colours and gradients.
class GlyphPainter final : public ORVGlyphPaintSink {
public:
    /// @param toPage  from the glyph's em units, y up, to page coordinates
    /// @param text    the text colour; its opacity is ignored
    /// @param page    bounding box of the page
    GlyphPainter(ORVPrintGenerator& generator, DrawingBudget& budget, const ORVFontFace& face,
                 const ORVMathAffine2D& toPage, const ORVPrintColour& text, const ORVMathBox2D& page)
        : generator_(generator), budget_(budget), face_(face), toPage_(toPage), text_(text), page_(page) {}

    /// 1, or the first failure.
    int GetStatus() const { return status_; }

    void BeginOutline(std::uint32_t glyph, const ORVMathAffine2D& toGlyph) override;
    void EndOutline() override;
    void Fill(const ORVGlyphPaint& paint) override;
    void BeginLayer(ORVGlyphBlend blend) override;
    bool BeginMaskedLayer(bool isInverse) override;
    void EndMask() override;
    void EndLayer() override;
    bool IsStopped() const override { return status_ != 1; }

private:
    /// An open outline. It becomes a clip unless it is filled with a single paint.
    struct Outline {
        ORVPrintPath path;
        ORVMathAffine2D toPage;
        bool isClip = false;
    };

    void Do(int result) {
        if (status_ == 1) status_ = result;
    }
    void CutToOutlines(std::size_t count);
    void FillPath(const ORVGlyphPaint& paint, const ORVPrintPath& path, const ORVMathAffine2D& toPage);
    void Sweep(const ORVGlyphPaint& paint);
    void DrawFilled(const ORVPrintPath& path, const ORVMathAffine2D& toPage, const ORVPrintFill& fill);
    ORVPrintColour ColourOf(const ORVGlyphPaintColour& colour) const;

    ORVPrintGenerator& generator_;
    DrawingBudget& budget_;
    const ORVFontFace& face_;
    const ORVMathAffine2D toPage_;
    const ORVPrintColour text_;
    const ORVMathBox2D page_;
    std::vector<Outline> outlines_;
    int status_ = 1;
};

}  // namespace svg2
