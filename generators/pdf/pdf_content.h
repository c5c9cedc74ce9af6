#pragma once

#include <string>

#include "generators/pdf/pdf_extent.h"
#include "generators/pdf/pdf_operators.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

class PdfFile;
class PdfFont;
class PdfFontTable;
class PdfImageTable;
struct ORVGlyphRun;

/// What a document's pages share.
struct PdfDocumentObjects {
    PdfFile& file;
    PdfFontTable& fonts;
    PdfImageTable& images;
};

/// Content that the document holds once and pages show at any number of places.
struct PdfForm {
    unsigned int object = 0;   ///< 0 when there is nothing to show
    ORVMathBox2D box;          ///< of what it shows, in its own coordinates
    double paintMargin = 0.0;  ///< how far lines and glyphs may reach beyond the box
    bool isColoured = false, isTransparent = false;
};

/// Draws shapes, texts and images: the content of a page, or of a form. Decides which operators draw them,
/// leaves their wording and the graphics state to PdfOperators, and notes how far they reach in PdfExtent.
/// Coordinates are user units, y pointing down, under one map that opens the content; those of a form are the
/// form's own.
class PdfContent {
public:
    /// A page. @param height  user units
    PdfContent(PdfDocumentObjects& document, double width, double height);
    /// A form.
    explicit PdfContent(PdfDocumentObjects& document);

    void DrawShape(const ORVPrintShape& shape);
    void DrawText(const ORVPrintText& text);
    void DrawImage(const ORVPrintImage& image);
    void DrawForm(const PdfForm& form, const ORVMathAffine2D& map);

    /// Nothing shows outside of the box until EndClip, which returns false when no clip is open.
    void BeginClip(const ORVMathBox2D& box);
    bool EndClip();

    /// Boxes of groups, cut to clips: all that is drawn counts between the two calls, which nest.
    void BeginBox() { extent_.BeginBox(); }
    ORVMathBox2D EndBox() { return extent_.EndBox(); }

    /// Ends a page. @return its dictionary's entries for content, resources and transparency
    std::string FinishPage();
    /// Ends a form and writes it.
    PdfForm FinishForm();

private:
    void SetFill(const ORVPrintFill& fill);
    void DrawRun(const ORVPrintText& text, const ORVGlyphRun& run);
    /// Draws lines around glyphs that the text operators cannot draw.
    void StrokeOutlines(const ORVPrintText& text, const ORVGlyphRun& run, const ORVPrintStroke& stroke);

    PdfDocumentObjects& document_;
    const ORVMathAffine2D toDefault_;  // from user units to the coordinates before any map
    PdfOperators out_;
    PdfExtent extent_;
    ORVPrintPath fitted_, outlines_;  // room for paths
    std::string shown_;               // room for glyphs that are being shown
};
