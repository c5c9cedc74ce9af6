// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_operators.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>

#include "generators/common/number_text.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_fonts.h"
#include "generators/pdf/pdf_syntax.h"

namespace {

// Dashes of a shorter period (user units) look like a solid line.
constexpr double kShortestDashPeriod = 0.02;
// Lines thinner than this (user units) are thinner than any device's dots.
constexpr double kHairline = 0.01;
// The content of a page is split into streams of this size, each compressed separately.
constexpr std::size_t kPieceSize = std::size_t{256} << 10U;

std::uint64_t ToKey(const ORVPrintColour& colour) {
    return std::uint64_t{colour.red} << 16U | std::uint64_t{colour.green} << 8U | colour.blue;
}

/// A colour component as a fraction with three digits, which distinguish 256 levels, and a space.
struct ColourPart {
    std::array<char, 5> text{};
    std::size_t length = 0;
};

constexpr std::array<ColourPart, 256> MakeColourParts() {
    std::array<ColourPart, 256> parts{};
    for (unsigned int i = 0; i < parts.size(); ++i) {
        ColourPart& part = parts[i];
        unsigned int rest = (i * 1000 + 127) / 255;
        if (rest == 0 || rest == 1000) {
            part.text[part.length++] = rest == 0 ? '0' : '1';
        } else {
            part.text[part.length++] = '.';
            for (; rest != 0; rest = rest % 100 * 10)
                part.text[part.length++] = static_cast<char>('0' + rest / 100);
        }
        part.text[part.length++] = ' ';
    }
    return parts;
}
constexpr std::array<ColourPart, 256> kColourParts = MakeColourParts();

int ToPdf(ORVPrintStroke::Cap cap) {
    return cap == ORVPrintStroke::Cap::kRound ? 1 : cap == ORVPrintStroke::Cap::kSquare ? 2 : 0;
}

int ToPdf(ORVPrintStroke::Join join) {
    return join == ORVPrintStroke::Join::kRound ? 1 : join == ORVPrintStroke::Join::kBevel ? 2 : 0;
}

/// Detects a path that is an axis-parallel rectangle on the page. @return false if it is not
bool IsRectangle(const ORVPrintPath& path, const ORVMathAffine2D& map, ORVMathPoint2D& corner,
                 ORVMathPoint2D& opposite) {
    using Verb = ORVPrintPath::Verb;
    constexpr std::array kVerbs{Verb::kMove, Verb::kLine, Verb::kLine, Verb::kLine, Verb::kClose};
    if (path.points.size() != 4 ||
        !std::equal(path.verbs.begin(), path.verbs.end(), kVerbs.begin(), kVerbs.end()))
        return false;
    const ORVMathPoint2D a = map(path.points[0]), b = map(path.points[1]), c = map(path.points[2]),
                         d = map(path.points[3]);
    corner = a;
    opposite = c;
    return (a.y == b.y && b.x == c.x && c.y == d.y && d.x == a.x) ||
           (a.x == b.x && b.y == c.y && c.x == d.x && d.y == a.y);
}

}  // namespace

void PdfOperators::ForgetPaint() {
    state_.fill = state_.stroke = kUnknownColour;
    state_.lineWidth = state_.miterLimit = -1.0;
}

void PdfOperators::PutNumber(double number) {
    AppendDecimal(content_, number, places_);
    content_ += ' ';
}

void PdfOperators::PutPoint(const ORVMathPoint2D& p) {
    PutNumber(p.x);
    PutNumber(p.y);
}

void PdfOperators::PutPath(const ORVPrintPath& path, const ORVMathAffine2D& map) {
    EndText();
    // Operators are composed here, so that the content grows once per operator.
    std::array<char, 6 * (kNumberRoom + 1) + 4> room;
    const auto put = [this, &room](char* end, std::string_view name) {
        content_.append(room.data(), std::copy(name.begin(), name.end(), end));
    };
    const auto write = [this](char* out, const ORVMathPoint2D& point) {
        out = WriteDecimal(out, point.x, places_);
        *out++ = ' ';
        out = WriteDecimal(out, point.y, places_);
        *out++ = ' ';
        return out;
    };
    ORVMathPoint2D corner, opposite;
    if (IsRectangle(path, map, corner, opposite))
        return put(write(write(room.data(), corner), {opposite.x - corner.x, opposite.y - corner.y}), "re\n");

    auto p = path.points.begin();
    for (const ORVPrintPath::Verb verb : path.verbs) {
        switch (verb) {
            case ORVPrintPath::Verb::kMove: put(write(room.data(), map(*p++)), "m\n"); break;
            case ORVPrintPath::Verb::kLine: put(write(room.data(), map(*p++)), "l\n"); break;
            case ORVPrintPath::Verb::kCubic: {
                char* end = room.data();
                for (int i = 0; i < 3; ++i) end = write(end, map(*p++));
                put(end, "c\n");
                break;
            }
            case ORVPrintPath::Verb::kClose: put(room.data(), "h\n"); break;
        }
        if (formBox_.empty()) Flush();  // forms contain whole paths
    }
}

void PdfOperators::PutName(char prefix, unsigned int number) {
    content_ += '/';
    content_ += prefix;
    AppendDecimal(content_, number, 0);
    content_ += ' ';
}

void PdfOperators::PutFactors(const ORVMathAffine2D& map) {
    for (const double factor : {map.m11, map.m21, map.m12, map.m22}) {
        AppendSignificant(content_, factor, kPdfFactorDigits);
        content_ += ' ';
    }
}

void PdfOperators::BeginActualText(std::string_view text) {
    Put("/Span<</ActualText");
    AppendPdfText(content_, text);
    Put(">>BDC\n");
}

void PdfOperators::PutColour(std::uint64_t colour, std::string_view gray, std::string_view rgb) {
    const std::array<std::uint8_t, 3> parts{static_cast<std::uint8_t>(colour >> 16U & 255U),
                                            static_cast<std::uint8_t>(colour >> 8U & 255U),
                                            static_cast<std::uint8_t>(colour & 255U)};
    const bool isGray = parts[0] == parts[1] && parts[0] == parts[2];
    std::array<char, 32> room;
    char* end = room.data();
    for (std::size_t i = 0; i < (isGray ? 1U : 3U); ++i) {
        const ColourPart& part = kColourParts[parts[i]];
        end = std::copy_n(part.text.begin(), part.length, end);
    }
    const std::string_view name = isGray ? gray : rgb;
    content_.append(room.data(), std::copy(name.begin(), name.end(), end));
    resources_.NotePaint(!isGray, false);
}

void PdfOperators::WritePiece() {
    pieces_.push_back(file_->Reserve());
    file_->WriteStream(pieces_.back(), "", std::move(content_), PdfFile::Packing::kContent);
    content_ = std::string();
}

void PdfOperators::Flush() {
    if (!file_ || content_.size() < kPieceSize) return;
    if (!formBox_.empty()) return FlushForm();
    WritePiece();
    content_.reserve(kPieceSize + 4096);
}

void PdfOperators::ComeInForms(std::string box) { formBox_ = std::move(box); }

void PdfOperators::BeginLayer(unsigned int object) {
    EndText();
    resources_.AddLayer(object);
    Put("/OC ");
    PutName('L', object);
    Put("BDC\n");
    ++openLayers_;
}

void PdfOperators::EndLayer() {
    EndText();
    Put("EMC\n");
    --openLayers_;
    Flush();
}

void PdfOperators::SaveForClip() {
    Save();
    clipStart_ = content_.size();
}

void PdfOperators::BeginClipped() {
    if (!formBox_.empty()) clips_.push_back("q\n" + content_.substr(clipStart_));
}

void PdfOperators::EndClipped() {
    Restore();
    if (formBox_.empty()) return;
    clips_.pop_back();
    Flush();
}

void PdfOperators::FlushForm() {
    // Operators that reopen clips take at most half of a form.
    const std::size_t written = content_.size() - repeated_;
    if (openLayers_ > 0) return;  // forms contain whole layers
    if (saved_.size() == clips_.size() && written >= std::max(kPieceSize, repeated_)) WriteForm();
}

void PdfOperators::WriteForm() {
    EndText();
    for (std::size_t i = 0; i < clips_.size(); ++i) content_ += "Q\n";
    if (formResources_ == 0) formResources_ = file_->Reserve();
    pieces_.push_back(file_->Reserve());
    file_->WriteStream(pieces_.back(),
                       "/Subtype/Form/BBox" + formBox_ + "/Resources " + PdfReference(formResources_),
                       std::move(content_), PdfFile::Packing::kContent);
    // The next form starts with the initial state and the open clips.
    content_ = std::string();
    for (const std::string& clip : clips_) content_ += clip;
    repeated_ = content_.size();
    state_ = {};
    ForgetPaint();
    saved_.assign(clips_.size(), state_);
}

void PdfOperators::Save() {
    EndText();
    saved_.push_back(state_);
    Put("q\n");
}

void PdfOperators::Concatenate(const ORVMathAffine2D& map) {
    EndText();
    AppendPdfMap(content_, map);
    Put("cm\n");
}

void PdfOperators::Restore() {
    EndText();
    state_ = std::move(saved_.back());
    saved_.pop_back();
    Put("Q\n");
}

void PdfOperators::BeginText() {
    if (!isTextOpen_) Put("BT\n");
    isTextOpen_ = true;
}

void PdfOperators::EndText() {
    if (isTextOpen_) Put("ET\n");
    isTextOpen_ = false;
}

void PdfOperators::SetOpacity(int fill, int stroke) {
    if (state_.fillOpacity == fill && state_.strokeOpacity == stroke) return;
    state_.fillOpacity = fill;
    state_.strokeOpacity = stroke;
    resources_.AddOpacity(fill, stroke);
    Put(PdfOpacityName(fill, stroke) + " gs\n");
}

void PdfOperators::SetFill(const ORVPrintColour& colour) {
    if (const std::uint64_t key = ToKey(colour); state_.fill != key) {
        state_.fill = key;
        PutColour(key, "g\n", "rg\n");
    }
}

void PdfOperators::SetFillPattern(unsigned int object) {
    const std::uint64_t key = kPatternColour + object;
    if (state_.fill == key) return;
    state_.fill = key;
    Put("/Pattern cs ");
    PutName('P', object);
    Put("scn\n");
}

void PdfOperators::SetStroke(const ORVPrintColour& colour) {
    if (const std::uint64_t key = ToKey(colour); state_.stroke != key) {
        state_.stroke = key;
        PutColour(key, "G\n", "RG\n");
    }
}

void PdfOperators::SetStrokePattern(unsigned int object) {
    const std::uint64_t key = kPatternColour + object;
    if (state_.stroke == key) return;
    state_.stroke = key;
    Put("/Pattern CS ");
    PutName('P', object);
    Put("SCN\n");
}

void PdfOperators::SetState(unsigned int object) {
    EndText();
    resources_.AddState(object);
    PutName('G', object);
    Put("gs\n");
}

void PdfOperators::SetLine(double width, int cap, int join, double miterLimit) {
    if (state_.lineWidth != width) {
        PutNumber(width);
        Put("w\n");
        state_.lineWidth = width;
    }
    if (state_.cap != cap) {
        AppendDecimal(content_, cap, 0);
        Put(" J\n");
        state_.cap = cap;
    }
    if (state_.join != join) {
        AppendDecimal(content_, join, 0);
        Put(" j\n");
        state_.join = join;
    }
    if (join == 0 && state_.miterLimit != miterLimit) {
        PutNumber(std::clamp(miterLimit, 1.0, kPdfCoordinateLimit));
        Put("M\n");
        state_.miterLimit = miterLimit;
    }
}

void PdfOperators::SetDashes(const ORVPrintStroke& stroke, double scale) {
    const double period = std::accumulate(stroke.dashes.begin(), stroke.dashes.end(), 0.0) * scale;
    const std::span<const double> dashes =
        period > kShortestDashPeriod ? stroke.dashes : std::span<const double>();
    const auto onPage = [scale](double dash) { return std::min(dash * scale, 10.0 * kPdfCoordinateLimit); };
    // An odd number of dashes repeats only after two rounds.
    const double offset =
        dashes.empty() || stroke.dashOffset == 0.0 ? 0.0 : std::fmod(stroke.dashOffset * scale, 2.0 * period);
    if (offset == state_.dashOffset &&
        std::equal(dashes.begin(), dashes.end(), state_.dashes.begin(), state_.dashes.end(),
                   [&](double dash, double set) { return onPage(dash) == set; }))
        return;
    state_.dashes.clear();
    Put("[");
    for (const double dash : dashes) {
        state_.dashes.push_back(onPage(dash));
        PutNumber(state_.dashes.back());
    }
    Put("]");
    PutNumber(offset);
    Put("d\n");
    state_.dashOffset = offset;
}

void PdfOperators::SetPen(const ORVPrintStroke& stroke, double scale) {
    double width = std::min(stroke.width * scale, kPdfCoordinateLimit);
    // Line width 0 is the thinnest line of the device.
    if (!(width >= kHairline)) width = 0.0;
    SetLine(width, ToPdf(stroke.cap), ToPdf(stroke.join), stroke.miterLimit);
    SetDashes(stroke, scale);
}

void PdfOperators::SetPlainLine() {
    SetLine(state_.lineWidth, 0, 0, state_.miterLimit);
    SetDashes({}, 1.0);
}

void PdfOperators::SetFont(const PdfFont& font, double size) {
    if (state_.font == &font && state_.fontSize == size) return;
    PutName('F', font.GetObject());
    AppendDecimal(content_, size, 5);
    Put(" Tf\n");
    state_.font = &font;
    state_.fontSize = size;
}

void PdfOperators::SetTextMode(int mode) {
    if (state_.textMode == mode) return;
    state_.textMode = mode;
    AppendDecimal(content_, mode, 0);
    Put(" Tr\n");
}

std::vector<unsigned int> PdfOperators::Finish() {
    EndText();
    WritePiece();
    return std::move(pieces_);
}

std::string PdfOperators::Take() {
    EndText();
    if (pieces_.empty()) return std::move(content_);
    WriteForm();
    file_->WriteObject(formResources_, std::exchange(resources_, {}).MakeDictionary());
    for (const unsigned int piece : pieces_) {
        resources_.AddObject(piece);
        PutName('X', piece);
        Put("Do\n");
    }
    return std::move(content_);
}
