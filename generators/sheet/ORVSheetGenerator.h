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

/// How pages come onto sheets, and in what colours and lines.
struct ORVSheetOptions {
    ORVSheetLayout layout;
    ORVColourMode colourMode = ORVColourMode::kColour;
    bool keepsGreys = false;      ///< with kMono: the format makes dots of the greys of areas and pictures
    double strokeScale = 1.0;     ///< factor on the widths of all lines
    double leastLineWidth = 0.0;  ///< user units on the sheet; thinner lines become as wide
    ORVPrintColour background{0, 0, 0, 0};  ///< that a page lies on; transparent for none
};

/// Stands before any generator and lays pages of drawings onto its pages, the sheets: on paper of a certain
/// size, several on one sheet, or one over several sheets as a poster. A page that goes over several sheets
/// is recorded and drawn for each of them; all others go through as they come.
///
/// The place where a link leads is reported once, on the first sheet that shows it. Page identifiers, titles
/// and descriptions go to the first sheet of their page; a sheet of several pages has those of its first one.
class ORVSheetGenerator final : public ORVPrintGenerator {
public:
    /// @param target   must outlive this object
    /// @param options  their layout has been found to work by ORVCheckSheetLayout
    ORVSheetGenerator(ORVPrintGenerator& target, const ORVSheetOptions& options);

    /// What went wrong here; empty when nothing did, or when it was the target.
    const ORVFailure& GetFailure() const { return failure_; }
    const std::string& GetError() const { return failure_.text; }

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
    /// What is known of the page that is being drawn, for sheets that begin later.
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

    /// Makes a call of the recording when there is one, else of the canvas.
    template <class Call>
    int Pass(Call call);
    const ORVPrintStroke* Widen(const ORVPrintStroke* stroke, const ORVMathAffine2D& toPage);

    ORVPrintGenerator& target_;
    const ORVSheetOptions options_;
    ORVSheetCanvas canvas_;
    ORVFailure failure_;
    unsigned int sheets_ = 0;                    // begun so far
    unsigned int documentPages_ = 0;             // 0 when not known
    double pageWidth_ = 0.0, pageHeight_ = 0.0;  // as it was given
    double pageScale_ = 1.0;
    bool isPageOpen_ = false;
    bool isClipped_ = false;  // the open place
    ORVPrintStroke stroke_;

    std::vector<ORVMathBox2D> cells_;  // of an open sheet that takes several pages
    std::size_t usedCells_ = 0;

    std::optional<ORVPoster> poster_;
    std::optional<ORVPageRecording> recording_;
    Page page_;
};
