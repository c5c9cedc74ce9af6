// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_glyphs.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <utility>
#include <vector>

#include "generators/common/map_measures.h"
#include "generators/common/number_text.h"
#include "generators/pdf/pdf_fonts.h"
#include "generators/pdf/pdf_operators.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

// Maximum position error, in 1/1000 em, before the pen is moved.
constexpr double kPenTolerance = 0.5;

/// The text of each glyph in a cluster, for readers that ignore the replacement text of the cluster: one
/// character per glyph in logical order if the counts match, otherwise all in the first.
class ClusterTexts {
public:
    ClusterTexts(std::string_view text, std::size_t glyphs, bool isRightToLeft)
        : rest_(text),
          isEach_(glyphs > 1 && CountCharacters(text) == glyphs),
          isRightToLeft_(isRightToLeft) {}

    /// Text of the next glyph from the left; may be empty.
    std::string_view TakeNext() {
        // Readers show a glyph without text as a replacement character. This character is invisible and does
        // not separate its neighbours.
        constexpr std::string_view kGraphemeJoiner = "\u034F";
        if (!isEach_) return std::exchange(rest_, rest_.empty() ? rest_ : kGraphemeJoiner);
        std::size_t at = isRightToLeft_ ? rest_.size() - 1 : 1;
        while (at > 0 && at < rest_.size() && IsWithin(rest_[at])) isRightToLeft_ ? --at : ++at;
        const std::string_view front = rest_.substr(0, at), back = rest_.substr(at);
        rest_ = isRightToLeft_ ? front : back;
        return isRightToLeft_ ? back : front;
    }

private:
    /// True for continuation bytes of UTF-8.
    static bool IsWithin(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }
    static std::size_t CountCharacters(std::string_view text) {
        return static_cast<std::size_t>(
            std::count_if(text.begin(), text.end(), [](char c) { return !IsWithin(c); }));
    }

    std::string_view rest_;
    bool isEach_, isRightToLeft_;
};

/// Writes the glyphs of a run. Consecutive glyphs of one font on one line form a string, or an array of
/// strings with adjustments.
class GlyphWriter {
public:
    GlyphWriter(PdfOperators& out, PdfFontTable& fonts, PdfFile& file, const ORVPrintText& text,
                const ORVGlyphRun& run, std::string& shown)
        : out_(out),
          fonts_(fonts),
          file_(file),
          text_(text),
          run_(run),
          // The size is in the matrix as well as in the font size; the latter keeps the size on the page
          // recognisable.
          size_(run.size * text.toPage.Enlargement()),
          em_(run.size * run.expansion),
          latest_(&fonts.Find(*run.face, file)),
          shown_(shown) {
        const double unit = run.size / size_;
        toPage_ = text.toPage * ORVMathAffine2D::Scaling(run.expansion * unit, unit);
        shown_.clear();
    }

    void WriteAll() {
        const std::vector<ORVGlyph>& glyphs = run_.glyphs;
        for (std::size_t first = 0; first < glyphs.size();) {
            // A cluster is a glyph and the following ones without text.
            std::size_t last = first + 1;
            while (last < glyphs.size() && glyphs[last].textLength == 0) ++last;
            WriteCluster(first, last);
            first = last;
        }
        EndStrings();
    }

private:
    void WriteCluster(std::size_t first, std::size_t last) {
        const ORVGlyph& front = run_.glyphs[first];
        std::string_view cluster;
        if (front.textOffset <= text_.text.size())
            cluster = text_.text.substr(front.textOffset, front.textLength);
        const bool isMany = last - first > 1 && !cluster.empty();
        if (isMany) {
            EndStrings();
            out_.BeginActualText(cluster);
        }
        ClusterTexts texts(cluster, last - first, run_.rightToLeft);
        for (std::size_t i = first; i < last; ++i) WriteGlyph(run_.glyphs[i], texts.TakeNext());
        if (isMany) {
            EndStrings();
            out_.Put("EMC\n");
        }
    }

    void WriteGlyph(const ORVGlyph& glyph, std::string_view ownText) {
        const unsigned int code = FindCode(glyph, ownText);
        const bool isNewLine = !font_ || glyph.y != pen_.y;
        if (latest_ != font_ || isNewLine) EndStrings();
        if (latest_ != font_) {
            font_ = latest_;
            out_.GetResources().AddFont(font_->GetObject());
            out_.SetFont(*font_, size_);
        }
        if (isNewLine || shown_.empty()) PlacePen(glyph);
        MovePen(glyph);
        if (!isStringOpen_) shown_ += '(';
        isStringOpen_ = true;
        font_->AppendCode(shown_, code);
        pen_.x += font_->GetWidth(code) * em_ / 1000.0;
    }

    unsigned int FindCode(const ORVGlyph& glyph, std::string_view ownText) {
        if (const unsigned int code = latest_->FindCode(glyph.index, ownText); code != 0) return code;
        latest_ = &fonts_.AddFont(*run_.face, file_);
        return latest_->FindCode(glyph.index, ownText);
    }

    void PlacePen(const ORVGlyph& glyph) {
        out_.PutFactors(toPage_);
        out_.PutPoint(text_.toPage({glyph.x, glyph.y}));
        out_.Put("Tm\n");
        pen_ = {glyph.x, glyph.y};
    }

    /// Moves the pen between two strings if its position error is too large.
    void MovePen(const ORVGlyph& glyph) {
        // Pen position error; rounded as written, so that errors do not accumulate.
        const double back = std::round((pen_.x - glyph.x) / em_ * 1e4) / 10.0;
        if (!(std::fabs(back) >= kPenTolerance)) return;
        if (isStringOpen_) shown_ += ')';
        isStringOpen_ = false;
        isArray_ = true;
        AppendDecimal(shown_, back, 1);
        pen_.x -= back * em_ / 1000.0;
    }

    void EndStrings() {
        if (isStringOpen_) shown_ += ')';
        if (isArray_) {
            out_.Put("[");
            out_.Put(shown_);
            out_.Put("]TJ\n");
        } else if (!shown_.empty()) {
            out_.Put(shown_);
            out_.Put("Tj\n");
        }
        shown_.clear();
        isArray_ = isStringOpen_ = false;
    }

    PdfOperators& out_;
    PdfFontTable& fonts_;
    PdfFile& file_;
    const ORVPrintText& text_;
    const ORVGlyphRun& run_;
    const double size_, em_;
    ORVMathAffine2D toPage_;
    PdfFont* font_ = nullptr;  // the one last set
    PdfFont* latest_;          // the one for further glyphs
    std::string& shown_;
    bool isArray_ = false, isStringOpen_ = false;  // state of the show operator
    // Where the next glyph would be placed without adjustment, in layout coordinates.
    ORVMathPoint2D pen_;
};

}  // namespace

void ShowPdfGlyphs(PdfOperators& out, PdfFontTable& fonts, PdfFile& file, const ORVPrintText& text,
                   const ORVGlyphRun& run, std::string& room) {
    GlyphWriter(out, fonts, file, text, run, room).WriteAll();
}
