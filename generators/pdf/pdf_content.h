// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "generators/pdf/pdf_extent.h"
#include "generators/pdf/pdf_gradients.h"
#include "generators/pdf/pdf_operators.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

class PdfFile;
class PdfFont;
class PdfFontTable;
class PdfImageTable;
class PdfObjectPool;
struct ORVGlyphRun;

/// Objects shared by the pages of a document.
struct PdfDocumentObjects {
    PdfFile& file;
    PdfFontTable& fonts;
    PdfImageTable& images;
    PdfObjectPool& pool;
};

/// A form: content stored once that pages show at any number of places.
struct PdfForm {
    unsigned int object = 0;   ///< 0 if there is nothing to show
    ORVMathBox2D box;          ///< bounding box, in its own coordinates
    double paintMargin = 0.0;  ///< how far lines and glyphs may extend beyond the box
    bool isColoured = false, isTransparent = false;
};

/// How a transparency group is composited.
struct PdfLayerPaint {
    double opacity = 1.0;
    ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal;
    bool isIsolated = true;
    unsigned int mask = 0;  ///< object of the group used as soft mask, 0 for none
    ORVPrintMask::Kind maskKind = ORVPrintMask::Kind::kLuminance;
};

/// Draws shapes, texts and images: the content of a page, a form or a transparency group. Chooses the
/// operators, leaves their syntax and the graphics state to PdfOperators, and records the extent in
/// PdfExtent. Coordinates are user units with y pointing down, under one matrix at the start of the content;
/// a form has its own coordinates.
class PdfContent {
public:
    /// A page. @param height  in user units
    PdfContent(PdfDocumentObjects& document, double width, double height);
    /// A form.
    explicit PdfContent(PdfDocumentObjects& document);
    /// A transparency group, in the coordinates of the content that will show it.
    /// @param box           clips the group; if empty, nothing shows
    /// @param isOutOfSight  for masks: their content does not count for the boxes of groups
    PdfContent(PdfContent& shownBy, const ORVMathBox2D& box, bool isOutOfSight);

    void DrawShape(const ORVPrintShape& shape);
    void DrawText(const ORVPrintText& text);
    void DrawImage(const ORVPrintImage& image);
    void DrawForm(const PdfForm& form, const ORVMathAffine2D& map);
    /// Fills a box with tiles. @param cell  from FinishTile
    void DrawTiles(const PdfForm& cell, const ORVMathBox2D& box);
    /// @param group  from FinishGroup; 0 if there is nothing to show
    /// @param box    of the group
    void DrawGroup(unsigned int group, const ORVMathBox2D& box, PdfLayerPaint paint);

    /// Clips to a box or an outline until EndClip, which returns false if no clip is open.
    void BeginClip(const ORVMathBox2D& box);
    void BeginClipPath(const ORVPrintClipPath& clip);
    bool EndClip();
    /// The part of a box that may be visible here.
    ORVMathBox2D VisiblePart(const ORVMathBox2D& box) const;

    /// Marks the content until EndLayer as part of an optional-content layer. @param object  its group
    void BeginLayer(unsigned int object) { out_.BeginLayer(object); }
    void EndLayer() { out_.EndLayer(); }

    /// Bounding boxes of groups, after clipping. The calls nest; each box includes all content between them.
    void BeginBox() { extent_->BeginBox(); }
    ORVMathBox2D EndBox() { return extent_->EndBox(); }

    /// Ends a page. @return entries of its dictionary for content, resources and transparency
    std::string FinishPage();
    /// Ends a form and writes it.
    PdfForm FinishForm();
    /// Ends a form that is the cell of a tiling pattern, and writes it. @param shownBy  the content that uses
    /// it
    PdfForm FinishTile(const ORVPrintTiles& tiles, const PdfContent& shownBy);
    /// Ends a group and writes it. @return its object; 0 if there is nothing to show
    unsigned int FinishGroup(bool isIsolated = true);

private:
    /// @param box  bounding box of what is painted; used for gradients only
    PdfPaint MakePaint(const ORVPrintFill& fill, const ORVMathBox2D& box);
    PdfPaint MakePaint(const ORVPrintStroke& stroke, const ORVMathBox2D& box);
    PdfPaint MakeGradientPaint(const ORVPrintGradient& gradient, const ORVMathBox2D& box);
    void SetFill(const PdfPaint& paint);
    void SetStroke(const PdfPaint& paint, const ORVPrintStroke& stroke, double scale);
    /// Sets the soft mask of a paint, until EndMasked. Neither does anything for a paint without a mask.
    void BeginMasked(const PdfPaint& paint);
    void EndMasked(const PdfPaint& paint);
    void StrokeShape(const ORVPrintShape& shape, const PdfPaint& paint, bool isSimple, double scale);
    void DrawRun(const ORVPrintText& text, const ORVGlyphRun& run);
    /// Strokes glyphs as outlines, where the text operators cannot.
    void StrokeOutlines(const ORVPrintText& text, const ORVGlyphRun& run, const ORVPrintStroke& stroke);

    PdfDocumentObjects& document_;
    const ORVMathAffine2D toDefault_;  // from user units to default space, before any matrix
    const ORVMathBox2D visible_;       // visible area; empty for none
    PdfOperators out_;
    std::shared_ptr<PdfExtent> extent_;  // a group shares that of the content that shows it
    unsigned int openClips_ = 0;
    ORVPrintPath fitted_, outlines_;  // buffers for paths
    std::string shown_;               // buffer for glyphs
};
