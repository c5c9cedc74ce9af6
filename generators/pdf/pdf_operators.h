// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "generators/pdf/pdf_resources.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

class PdfFile;
class PdfFont;

/// Maximum absolute coordinate, in user units: content beyond it is clipped. No page is larger, and readers
/// have a limited range.
inline constexpr double kPdfCoordinateLimit = 40'000.0;

/// Writes the operators of a content stream: numbers, paths and the graphics state, omitting settings that
/// are already in force. It handles syntax, not drawing, and collects the resources that operators use.
class PdfOperators {
public:
    /// @param file    receives the content as it grows; null keeps all of it in memory, for forms
    /// @param places  decimal places of coordinates
    PdfOperators(PdfFile* file, int places) : file_(file), places_(places) {}

    /// Forgets the known graphics state: a form inherits an unknown state from where it is shown.
    void ForgetPaint();

    void Put(std::string_view text) { content_ += text; }
    void PutPoint(const ORVMathPoint2D& p);
    /// Writes the outline of a path, without a painting operator.
    void PutPath(const ORVPrintPath& path, const ORVMathAffine2D& map);
    /// Writes the name of a resource.
    void PutName(char prefix, unsigned int number);
    /// Writes the four coefficients of the linear part of a matrix.
    void PutFactors(const ORVMathAffine2D& map);
    /// Begins marked content with replacement text (UTF-8); "EMC" ends it.
    void BeginActualText(std::string_view text);
    /// Begins content of an optional-content layer, until EndLayer. @param object  its group
    void BeginLayer(unsigned int object);
    void EndLayer();
    /// Passes the content to the file if there is enough to compress separately. Must not be called between
    /// Save and Restore, except for clips.
    void Flush();
    /// Splits content of forms into pieces too: nested forms, each of which starts with the graphics state of
    /// the whole. Must be called before anything is put.
    /// @param box  bounding box of the content, in PDF syntax
    void ComeInForms(std::string box);
    /// Saves the state for a clip, which is put next; BeginClipped follows it, before the clipped content.
    void SaveForClip();
    void BeginClipped();
    void EndClipped();

    /// Saves the graphics state, including the matrix, until Restore.
    void Save();
    void Concatenate(const ORVMathAffine2D& map);
    void Restore();
    /// Consecutive texts share a text object; anything not allowed in one ends it.
    void BeginText();
    void EndText();

    void SetFill(const ORVPrintColour& colour);
    /// @param object  the pattern
    void SetFillPattern(unsigned int object);
    void SetFillOpacity(int opacity) { SetOpacity(opacity, state_.strokeOpacity); }
    void SetStroke(const ORVPrintColour& colour);
    void SetStrokePattern(unsigned int object);
    void SetStrokeOpacity(int opacity) { SetOpacity(state_.fillOpacity, opacity); }
    void SetOpacity(int fill, int stroke);
    /// Sets a graphics state object. Its settings are not tracked, so it must be enclosed in Save and
    /// Restore.
    void SetState(unsigned int object);
    /// Sets width, style and dashes of lines. @param scale  factor for lengths
    void SetPen(const ORVPrintStroke& stroke, double scale);
    /// Resets line style to that at the start of a page, except the width.
    void SetPlainLine();
    void SetFont(const PdfFont& font, double size);
    void SetTextMode(int mode);

    PdfResources& GetResources() { return resources_; }
    int GetPlaces() const { return places_; }

    /// Ends the content and writes the rest. @return the streams it consists of
    std::vector<unsigned int> Finish();
    /// Ends the content. @return the part not yet passed to the file, which shows the rest
    std::string Take();

private:
    static constexpr std::uint64_t kUnknownColour = ~std::uint64_t{0};
    static constexpr std::uint64_t kPatternColour = std::uint64_t{1} << 32U;  // the pattern's object is added

    struct State {
        std::uint64_t fill = 0, stroke = 0;  // red, green, blue from the upper bits down, or a pattern
        int fillOpacity = 255, strokeOpacity = 255;
        double lineWidth = 1.0;
        int cap = 0, join = 0;
        double miterLimit = 10.0;
        std::vector<double> dashes;
        double dashOffset = 0.0;
        int textMode = 0;
        const PdfFont* font = nullptr;
        double fontSize = 0.0;
    };

    void PutNumber(double number);
    void PutColour(std::uint64_t colour, std::string_view gray, std::string_view rgb);
    void SetLine(double width, int cap, int join, double miterLimit);
    void SetDashes(const ORVPrintStroke& stroke, double scale);
    void WritePiece();
    void FlushForm();
    void WriteForm();

    PdfFile* const file_;
    const int places_;
    std::string content_;
    std::vector<unsigned int> pieces_;  // streams of the content so far, or forms
    PdfResources resources_;
    State state_;
    std::vector<State> saved_;
    bool isTextOpen_ = false;
    unsigned int openLayers_ = 0;

    // For content split into forms.
    std::string formBox_;             // empty if it is not split
    std::vector<std::string> clips_;  // operators of the open clips
    std::size_t clipStart_ = 0;       // where the operators of the current clip begin
    std::size_t repeated_ = 0;        // length of the content that repeats earlier clips
    unsigned int formResources_ = 0;
};
