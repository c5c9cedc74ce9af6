#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

class PdfFile;
class PdfFontTable;
class PdfImageTable;
struct ORVGlyphRun;

/// What a document's pages share.
struct PdfDocumentObjects {
    PdfFile& file;
    PdfFontTable& fonts;
    PdfImageTable& images;
};

/// The content of one page: turns shapes, texts and images into the operators of the page's stream, which is
/// written as it grows. Coordinates are user units, y pointing down, under one map that opens the stream.
class PdfPage {
public:
    /// Begins the page's stream.
    /// @param width, height  user units
    PdfPage(PdfDocumentObjects& document, unsigned int contentObject, double width, double height);

    void DrawShape(const ORVPrintShape& shape);
    void DrawText(const ORVPrintText& text);
    void DrawImage(const ORVPrintImage& image);

    /// Nothing shows outside of the box until EndClip, which returns false when no clip is open.
    void BeginClip(const ORVMathBox2D& box);
    bool EndClip();

    /// Boxes of groups, in page coordinates cut to the page: all that is drawn counts between the two calls,
    /// which nest.
    void BeginBox() { boxes_.emplace_back(); }
    ORVMathBox2D EndBox();

    /// Ends the stream. @return the page's resource dictionary
    std::string Finish();

private:
    /// Parameters that stay until they are changed; what is set already is not written again.
    struct State {
        std::string fill = "0 g", stroke = "0 G";  // operators that set the colours
        int fillOpacity = 255, strokeOpacity = 255;
        double lineWidth = 1.0;
        int cap = 0, join = 0;
        double miterLimit = 10.0;
        std::vector<double> dashes;
        int textMode = 0;
    };

    void Put(std::string_view text) { content_ += text; }
    void PutNumber(double number);
    void PutPoint(const ORVMathPoint2D& p);
    /// Six numbers of a map.
    void PutMap(const ORVMathAffine2D& map);
    void PutPath(const ORVPrintPath& path, const ORVMathAffine2D& map);
    void Flush();

    /// Saves the state and multiplies a map onto the coordinates; Restore undoes both.
    void Save();
    void Concatenate(const ORVMathAffine2D& map);
    void Restore();

    void SetFill(const ORVPrintFill& fill);
    void SetStrokeColour(const ORVPrintColour& colour);
    /// @param scale  of lengths
    void SetStroke(const ORVPrintStroke& stroke, double scale);
    void SetLine(double width, int cap, int join, double miterLimit);
    void SetDashes(std::vector<double> dashes);
    void SetOpacity(int fill, int stroke);
    void SetTextMode(int mode);
    std::string FindPattern(const ORVPrintFill& fill);

    void DrawRun(const ORVPrintText& text, const ORVGlyphRun& run);
    void ShowGlyphs(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& map);
    void StrokeOutlines(const ORVPrintText& text, const ORVGlyphRun& run, const ORVPrintStroke& stroke);
    void Touch(const ORVPrintPath& path, const ORVMathAffine2D& map, double margin);
    void TouchBox(double xMin, double yMin, double xMax, double yMax, const ORVMathAffine2D& map);

    PdfDocumentObjects& document_;
    const double width_, height_;
    std::string content_;
    State state_;
    std::vector<State> saved_;
    std::vector<ORVMathBox2D> boxes_;
    int openClips_ = 0;
    ORVPrintPath fitted_, outlines_;

    std::set<unsigned int> fonts_, images_;
    std::set<std::pair<int, int>> opacities_;  // of fill and stroke
    struct Pattern {
        const ORVPixelImage* image;
        ORVMathAffine2D map;
        unsigned int object;
    };
    std::vector<Pattern> patterns_;
    std::vector<std::pair<unsigned int, std::string>> pendingPatterns_;  // object, entries and content
};
