#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

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

/// Turns shapes, texts and images into operators: the content of a page, or of a form. A page's content is
/// handed to the file as it grows. Coordinates are user units, y pointing down, under one map that opens the
/// content; those of a form are the form's own.
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
    void BeginBox() { boxes_.emplace_back(); }
    ORVMathBox2D EndBox();

    /// Ends a page. @return its dictionary's entries for content, resources and transparency
    std::string FinishPage();
    /// Ends a form and writes it.
    PdfForm FinishForm();

private:
    static constexpr std::uint64_t kUnknownColour = ~std::uint64_t{0};
    static constexpr std::uint64_t kPatternColour = std::uint64_t{1} << 32U;  // the pattern's object added

    /// Parameters that stay until they are changed; what is set already is not written again.
    struct State {
        std::uint64_t fill = 0, stroke = 0;  // red, green, blue from the upper bits down, or a pattern
        int fillOpacity = 255, strokeOpacity = 255;
        double lineWidth = 1.0;
        int cap = 0, join = 0;
        double miterLimit = 10.0;
        std::vector<double> dashes;
        int textMode = 0;
        const PdfFont* font = nullptr;
        double fontSize = 0.0;
    };

    void Put(std::string_view text) { content_ += text; }
    void PutNumber(double number);
    void PutPoint(const ORVMathPoint2D& p);
    void PutPath(const ORVPrintPath& path, const ORVMathAffine2D& map);
    void PutName(char prefix, unsigned int number);
    void PutColour(std::uint64_t colour, std::string_view gray, std::string_view rgb);
    void Flush();

    /// Saves the state and multiplies a map onto the coordinates; Restore undoes both.
    void Save();
    void Concatenate(const ORVMathAffine2D& map);
    void Restore();
    /// Texts that follow each other share one text object.
    void BeginText();
    void EndText();

    void SetFill(const ORVPrintFill& fill);
    void SetStrokeColour(const ORVPrintColour& colour);
    /// @param scale  of lengths
    void SetStroke(const ORVPrintStroke& stroke, double scale);
    void SetLine(double width, int cap, int join, double miterLimit);
    void SetDashes(const ORVPrintStroke& stroke, double scale);
    void SetOpacity(int fill, int stroke);
    void SetTextMode(int mode);
    unsigned int FindPattern(const ORVPrintFill& fill);

    void DrawRun(const ORVPrintText& text, const ORVGlyphRun& run);
    void ShowGlyphs(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& map);
    void StrokeOutlines(const ORVPrintText& text, const ORVGlyphRun& run, const ORVPrintStroke& stroke);
    bool IsMeasured() const { return isForm_ || !boxes_.empty(); }
    void TouchPath(const ORVPrintPath& path, const ORVMathAffine2D& map, double margin);
    void TouchBox(const ORVMathBox2D& box, const ORVMathAffine2D& map);
    void Touch(ORVMathBox2D box);
    std::string MakeResources() const;

    PdfDocumentObjects& document_;
    const bool isForm_;
    const ORVMathAffine2D toDefault_;  // from user units to the coordinates before any map
    const ORVMathBox2D area_;          // of a page
    const int places_;                 // digits after the point of coordinates
    std::string content_;
    std::vector<unsigned int> pieces_;  // streams of a page's content so far
    State state_;
    std::vector<State> saved_;
    bool isTextOpen_ = false;
    ORVMathBox2D wholeBox_;     // of a form
    double paintMargin_ = 0.0;  // how far lines may reach beyond it, at corners
    std::vector<ORVMathBox2D> boxes_, clips_;
    ORVPrintPath fitted_, outlines_;
    std::string shown_;  // glyphs that are being shown
    bool isColoured_ = false, isTransparent_ = false;

    std::set<unsigned int> fonts_, objects_;
    std::set<std::pair<int, int>> opacities_;  // of fill and stroke
    struct Pattern {
        const ORVPixelImage* image;
        ORVMathAffine2D map;
        unsigned int object;
    };
    std::vector<Pattern> patterns_;
};
