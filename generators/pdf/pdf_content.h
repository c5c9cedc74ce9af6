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

/// What a document's pages share.
struct PdfDocumentObjects {
    PdfFile& file;
    PdfFontTable& fonts;
    PdfImageTable& images;
    PdfObjectPool& pool;
};

/// Content that the document holds once and pages show at any number of places.
struct PdfForm {
    unsigned int object = 0;   ///< 0 when there is nothing to show
    ORVMathBox2D box;          ///< of what it shows, in its own coordinates
    double paintMargin = 0.0;  ///< how far lines and glyphs may reach beyond the box
    bool isColoured = false, isTransparent = false;
};

/// How what is painted by itself is laid over what is there.
struct PdfLayerPaint {
    double opacity = 1.0;
    ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal;
    bool isIsolated = true;
    unsigned int mask = 0;  ///< group that says what shows, 0 for none
    ORVPrintMask::Kind maskKind = ORVPrintMask::Kind::kLuminance;
};

/// Draws shapes, texts and images: the content of a page, of a form, or of a transparency group. Decides
/// which operators draw them, leaves their wording and the graphics state to PdfOperators, and notes how far
/// they reach in PdfExtent. Coordinates are user units, y pointing down, under one map that opens the
/// content; those of a form are the form's own.
class PdfContent {
public:
    /// A page. @param height  user units
    PdfContent(PdfDocumentObjects& document, double width, double height);
    /// A form.
    explicit PdfContent(PdfDocumentObjects& document);
    /// A transparency group, in the coordinates of the content that is to show it.
    /// @param box           nothing shows outside; nothing at all when it is empty
    /// @param isOutOfSight  as a mask is: boxes of groups do not count what it draws
    PdfContent(PdfContent& shownBy, const ORVMathBox2D& box, bool isOutOfSight);

    void DrawShape(const ORVPrintShape& shape);
    void DrawText(const ORVPrintText& text);
    void DrawImage(const ORVPrintImage& image);
    void DrawForm(const PdfForm& form, const ORVMathAffine2D& map);
    /// Covers a box with tiles. @param cell  from FinishTile of content that this shows
    void DrawTiles(const PdfForm& cell, const ORVMathBox2D& box);
    /// @param group  from FinishGroup; 0 when there is nothing to show
    /// @param box    that of the group
    void DrawGroup(unsigned int group, const ORVMathBox2D& box, PdfLayerPaint paint);

    /// Nothing shows outside of the box, or the outline, until EndClip, which returns false when no clip is
    /// open.
    void BeginClip(const ORVMathBox2D& box);
    void BeginClipPath(const ORVPrintClipPath& clip);
    bool EndClip();
    /// The part of a box that can show here.
    ORVMathBox2D VisiblePart(const ORVMathBox2D& box) const;

    /// What comes until EndLayer belongs to a layer of the drawing. @param object  its group
    void BeginLayer(unsigned int object) { out_.BeginLayer(object); }
    void EndLayer() { out_.EndLayer(); }

    /// Boxes of groups, cut to clips: all that is drawn counts between the two calls, which nest.
    void BeginBox() { extent_->BeginBox(); }
    ORVMathBox2D EndBox() { return extent_->EndBox(); }

    /// Ends a page. @return its dictionary's entries for content, resources and transparency
    std::string FinishPage();
    /// Ends a form and writes it.
    PdfForm FinishForm();
    /// Ends a form that is the cell of a pattern, and writes it. @param shownBy  the content that uses it
    PdfForm FinishTile(const ORVPrintTiles& tiles, const PdfContent& shownBy);
    /// Ends a group and writes it. @return its object; 0 when there is nothing to show
    unsigned int FinishGroup(bool isIsolated = true);

private:
    /// @param box  what is painted with it reaches no farther; looked at for gradients only
    PdfPaint MakePaint(const ORVPrintFill& fill, const ORVMathBox2D& box);
    PdfPaint MakePaint(const ORVPrintStroke& stroke, const ORVMathBox2D& box);
    PdfPaint MakeGradientPaint(const ORVPrintGradient& gradient, const ORVMathBox2D& box);
    void SetFill(const PdfPaint& paint);
    void SetStroke(const PdfPaint& paint, const ORVPrintStroke& stroke, double scale);
    /// Puts a paint's mask into force until EndMasked; neither does anything without one.
    void BeginMasked(const PdfPaint& paint);
    void EndMasked(const PdfPaint& paint);
    void StrokeShape(const ORVPrintShape& shape, const PdfPaint& paint, bool isSimple, double scale);
    void DrawRun(const ORVPrintText& text, const ORVGlyphRun& run);
    /// Draws lines around glyphs that the text operators cannot draw.
    void StrokeOutlines(const ORVPrintText& text, const ORVGlyphRun& run, const ORVPrintStroke& stroke);

    PdfDocumentObjects& document_;
    const ORVMathAffine2D toDefault_;  // from user units to the coordinates before any map
    const ORVMathBox2D visible_;       // what can show at all; empty for nothing
    PdfOperators out_;
    std::shared_ptr<PdfExtent> extent_;  // a group's is that of the content that shows it
    unsigned int openClips_ = 0;
    ORVPrintPath fitted_, outlines_;  // room for paths
    std::string shown_;               // room for glyphs that are being shown
};
