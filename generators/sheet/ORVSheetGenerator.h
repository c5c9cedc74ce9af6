// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "generators/common/ORVPageRecording.h"
#include "generators/sheet/ORVSheetCanvas.h"
#include "generators/sheet/sheet_layout.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// How pages are placed on sheets, and in which colours and line widths.
struct ORVSheetOptions {
    ORVSheetLayout layout;
    ORVColourMode colourMode = ORVColourMode::kColour;
    bool keepsGreys = false;                ///< with kMono: the format dithers areas and images itself
    double strokeScale = 1.0;               ///< factor for the widths of all lines
    double leastLineWidth = 0.0;            ///< minimum line width, in user units on the sheet
    ORVPrintColour background{0, 0, 0, 0};  ///< painted below each page; transparent for none
};

/// Places pages of drawings on sheets, the pages of another generator: scaled to a paper size, several per
/// sheet, or one across several sheets as a poster. A page of a poster is recorded and drawn once per sheet;
/// all others are passed on directly.
///
/// A link target is reported once, on the first sheet that shows it. Identifiers, titles and descriptions of
/// a page are reported on its first sheet; a sheet of several pages has those of the first one.
class ORVSheetGenerator final : public ORVPrintGenerator {
public:
    /// @param target   must outlive this object
    /// @param options  with a layout that ORVCheckSheetLayout accepts
    ORVSheetGenerator(ORVPrintGenerator& target, const ORVSheetOptions& options);

    /// The error that occurred here, if any. Errors of the target are not included.
    const ORVFailure& GetFailure() const { return failure_; }
    const std::string& GetError() const { return failure_.text; }
    /// Scale from the page to its sheet, once the page has begun.
    double GetPageScale() const { return pageScale_; }

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
    int EndSymbol() override;
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    /// Data of the current page, for sheets that begin later.
    struct Page {
        unsigned int number = 0;
        std::string id, title, description;
    };

    int BeginOnSheet(const ORVPrintPageInfo& info);
    int BeginInCell(const ORVPrintPageInfo& info);
    int BeginPoster(const ORVPrintPageInfo& info);
    int BeginPosterSheet(unsigned int row, unsigned int column);
    int DrawPosterSheets();
    int EndSheet();
    int OpenSheet(ORVPrintPageInfo info, double width, double height);
    int OpenPlace(const ORVPlacedPage& page);
    int PaintBackground();
    int ClosePlace();
    int Refuse(const std::string& error);
    int RefuseSize(unsigned int page);

    /// Passes a call to the recording if there is one, otherwise to the canvas.
    template <class Call>
    int Pass(Call call);
    const ORVPrintStroke* Widen(const ORVPrintStroke* stroke, const ORVMathAffine2D& toPage);

    ORVPrintGenerator& target_;
    const ORVSheetOptions options_;
    ORVSheetCanvas canvas_;
    ORVFailure failure_;
    unsigned int sheets_ = 0;                    // begun so far
    unsigned int documentPages_ = 0;             // 0 if not known
    double pageWidth_ = 0.0, pageHeight_ = 0.0;  // as given by the drawing
    double pageScale_ = 1.0;
    bool isPageOpen_ = false;
    bool isClipped_ = false;  // the open page has a clip
    ORVPrintStroke stroke_;

    std::vector<ORVMathBox2D> cells_;  // of the open sheet, if it takes several pages
    std::size_t usedCells_ = 0;

    std::optional<ORVPoster> poster_;
    std::optional<ORVPageRecording> recording_;
    Page page_;
};
