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

/// What lies farther out (user units) is cut off: no page is larger, and readers hold coordinates in few
/// bits.
inline constexpr double kPdfCoordinateLimit = 40'000.0;

/// The operators of one content stream: numbers, paths, and the graphics state, of which nothing is written
/// again that is in force already. It knows how things are said, not what is drawn, and keeps the list of
/// what the operators refer to.
class PdfOperators {
public:
    /// @param file    receives the content as it grows; null keeps all of it, for forms
    /// @param places  digits after the point of coordinates
    PdfOperators(PdfFile* file, int places) : file_(file), places_(places) {}

    /// Takes nothing of the state to be known: a form begins with what is in force where it is shown.
    void ForgetPaint();

    void Put(std::string_view text) { content_ += text; }
    void PutPoint(const ORVMathPoint2D& p);
    /// The path's outline, without the operator that paints it.
    void PutPath(const ORVPrintPath& path, const ORVMathAffine2D& map);
    /// A resource's name.
    void PutName(char prefix, unsigned int number);
    /// The four factors of a map, without its translation.
    void PutFactors(const ORVMathAffine2D& map);
    /// Says what the marked content that begins here stands for (UTF-8); "EMC" ends it.
    void BeginActualText(std::string_view text);
    /// What comes until EndLayer belongs to a layer. @param object  its group
    void BeginLayer(unsigned int object);
    void EndLayer();
    /// Hands the content to the file when there is enough of it to be compressed on its own. Not called
    /// within what Save and Restore enclose, but for clips.
    void Flush();
    /// Has content that no page holds come in pieces, too: in forms, each of which begins with the graphics
    /// state that the whole begins with. Called before all that is put.
    /// @param box  what the content may cover, as the format writes it
    void ComeInForms(std::string box);
    /// Saves the state for a clip, which is put then; what it cuts comes between the other two.
    void SaveForClip();
    void BeginClipped();
    void EndClipped();

    /// Saves the state; Restore brings it back, and the map.
    void Save();
    void Concatenate(const ORVMathAffine2D& map);
    void Restore();
    /// Texts that follow each other share one text object; what cannot stand in one ends it.
    void BeginText();
    void EndText();

    void SetFill(const ORVPrintColour& colour);
    /// @param object  of the pattern
    void SetFillPattern(unsigned int object);
    void SetFillOpacity(int opacity) { SetOpacity(opacity, state_.strokeOpacity); }
    void SetStroke(const ORVPrintColour& colour);
    void SetStrokePattern(unsigned int object);
    void SetStrokeOpacity(int opacity) { SetOpacity(state_.fillOpacity, opacity); }
    void SetOpacity(int fill, int stroke);
    /// Puts a graphics state into force that is an object. What it sets is not known here: it stands within
    /// Save and Restore.
    void SetState(unsigned int object);
    /// Width, form and dashes of lines. @param scale  of lengths
    void SetPen(const ORVPrintStroke& stroke, double scale);
    /// A line as it is at the start of a page, but for its width.
    void SetPlainLine();
    void SetFont(const PdfFont& font, double size);
    void SetTextMode(int mode);

    PdfResources& GetResources() { return resources_; }
    int GetPlaces() const { return places_; }

    /// Ends the content and writes the rest of it. @return the streams that it came in
    std::vector<unsigned int> Finish();
    /// Ends the content. @return all of it that was not handed to the file, which then shows the rest
    std::string Take();

private:
    static constexpr std::uint64_t kUnknownColour = ~std::uint64_t{0};
    static constexpr std::uint64_t kPatternColour = std::uint64_t{1} << 32U;  // the pattern's object added

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

    // Where content comes in forms.
    std::string formBox_;             // empty where it does not
    std::vector<std::string> clips_;  // operators of those that are open
    std::size_t clipStart_ = 0;       // where those of the clip begin that is being put
    std::size_t repeated_ = 0;        // what of the content repeats clips that were open before
    unsigned int formResources_ = 0;
};
