// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_fonts.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "generators/common/glyph_outlines.h"
#include "generators/common/number_text.h"
#include "generators/pdf/cff_table.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_syntax.h"
#include "platform/visualization/fonts/ORVFontFace.h"

namespace {

bool HasTable(const ORVFontFace& face, std::string_view name) { return !face.GetTable(name).bytes.empty(); }

int ReadSigned16(std::string_view table, std::size_t at) {
    if (at + 2 > table.size()) return 0;
    const auto high = static_cast<unsigned char>(table[at]), low = static_cast<unsigned char>(table[at + 1]);
    return static_cast<std::int16_t>(high << 8 | low);
}

/// True if the font program that would be embedded for a variable face is static: it has no "fvar" table.
bool StandsStill(const ORVFontFace& face) {
    constexpr std::size_t kHeader = 12, kRecord = 16;
    const ORVFontSubset subset = face.MakeSubset({0}, "");
    const std::string_view program = subset.program.bytes;
    if (program.size() < kHeader) return false;
    const auto tables = static_cast<std::size_t>(ReadSigned16(program, 4));
    for (std::size_t i = 0; i < tables && kHeader + (i + 1) * kRecord <= program.size(); ++i)
        if (program.substr(kHeader + i * kRecord).starts_with("fvar")) return false;
    return true;
}

/// Faces whose file can be embedded: with quadratic outlines.
bool IsPlainTrueType(const ORVFontFace& face) {
    return HasTable(face, "glyf") && HasTable(face, "loca") && (!HasTable(face, "fvar") || StandsStill(face));
}

/// Faces whose cubic outlines can be embedded: not variable and not CID-keyed.
bool IsPlainCff(const ORVFontFace& face) {
    const ORVFontBytes table = face.GetTable("CFF ");
    return !table.bytes.empty() && !HasTable(face, "fvar") && IsPlainCffTable(table.bytes);
}

std::string Hex(unsigned int value, int digits) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += kDigits[value >> static_cast<unsigned>(shift) & 15U];
    return text;
}

void AppendPath(std::string& content, const ORVPrintPath& path) {
    auto p = path.points.begin();
    const auto point = [&] {
        AppendDecimal(content, p->x, kPdfPlaces);
        content += ' ';
        AppendDecimal(content, p->y, kPdfPlaces);
        content += ' ';
        ++p;
    };
    for (const ORVPrintPath::Verb verb : path.verbs) {
        switch (verb) {
            case ORVPrintPath::Verb::kMove:
                point();
                content += "m\n";
                break;
            case ORVPrintPath::Verb::kLine:
                point();
                content += "l\n";
                break;
            case ORVPrintPath::Verb::kCubic:
                point();
                point();
                point();
                content += "c\n";
                break;
            case ORVPrintPath::Verb::kClose: content += "h\n"; break;
        }
    }
}

}  // namespace

PdfFont::PdfFont(const ORVFontFace& face, Kind kind, unsigned int object)
    : keptFace_(face.Share()), face_(face), kind_(kind), object_(object) {}

unsigned int PdfFont::FindCode(std::uint32_t glyph, std::string_view text) {
    // A glyph nearly always represents the same text.
    if (glyph < firstCodes_.size() && firstCodes_[glyph] != 0 &&
        entries_[firstCodes_[glyph] - 1].text == text)
        return firstCodes_[glyph];
    std::string key(reinterpret_cast<const char*>(&glyph), sizeof glyph);
    key += text;
    const auto found = codes_.find(key);
    if (found != codes_.end()) return found->second;
    if (entries_.size() >= Capacity()) return 0;
    entries_.push_back({glyph, face_.GetAdvance(glyph) * 1000.0, std::string(text)});
    const auto code = static_cast<unsigned int>(entries_.size());
    codes_.emplace(std::move(key), code);
    if (firstCodes_.size() <= glyph) firstCodes_.resize(glyph + 1, 0);
    if (firstCodes_[glyph] == 0) firstCodes_[glyph] = code;
    return code;
}

void PdfFont::AppendCode(std::string& text, unsigned int code) const {
    const auto add = [&text](unsigned int byte) {
        const auto c = static_cast<char>(byte);
        if (c == '(' || c == ')' || c == '\\') text += '\\';
        if (c == '\r')
            text += "\\r";  // an unescaped carriage return would be read as a line feed
        else
            text += c;
    };
    if (kind_ != Kind::kDrawn) add(code >> 8U & 0xFFU);
    add(code & 0xFFU);
}

std::string PdfFont::MakeName() const {
    // Six letters distinguish subsets of a font; they encode the object number.
    std::string name;
    for (unsigned int i = 0, rest = object_; i < 6; ++i, rest /= 26)
        name += static_cast<char>('A' + rest % 26);
    name += '+';
    const std::string& own =
        face_.GetPostScriptName().empty() ? face_.GetFamily() : face_.GetPostScriptName();
    for (const char c : own)
        if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-') name += c;
    return name;
}

unsigned int PdfFont::WriteToUnicode(PdfFile& file) const {
    const int digits = kind_ == Kind::kDrawn ? 2 : 4;
    std::string map =
        "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
        "/CIDSystemInfo <</Registry (Adobe)/Ordering (UCS)/Supplement 0>> def\n"
        "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n1 begincodespacerange\n<" +
        Hex(0, digits) + "> <" + Hex(Capacity(), digits) + ">\nendcodespacerange\n";
    std::vector<unsigned int> codes;
    for (unsigned int i = 0; i < entries_.size(); ++i)
        if (!entries_[i].text.empty()) codes.push_back(i + 1);
    // CMaps allow 100 entries per block.
    constexpr std::size_t kBlock = 100;
    for (std::size_t start = 0; start < codes.size(); start += kBlock) {
        const std::size_t end = std::min(start + kBlock, codes.size());
        map += std::to_string(end - start) + " beginbfchar\n";
        for (std::size_t i = start; i < end; ++i) {
            map += "<" + Hex(codes[i], digits) + "> <";
            AppendHexUtf16(map, entries_[codes[i] - 1].text);
            map += ">\n";
        }
        map += "endbfchar\n";
    }
    map += "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
    const unsigned int object = file.Reserve();
    file.WriteStream(object, "", std::move(map), PdfFile::Packing::kDeflate);
    return object;
}

unsigned int PdfFont::WriteEncoding(PdfFile& file, const std::vector<std::uint32_t>& glyphs) const {
    std::string map =
        "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
        "/CIDSystemInfo <</Registry (Adobe)/Ordering (Identity)/Supplement 0>> def\n"
        "/CMapName /Codes def\n/CMapType 1 def\n1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    // CMaps allow 100 entries per block. The first glyph has no code.
    constexpr std::size_t kBlock = 100;
    for (std::size_t start = 1; start < glyphs.size(); start += kBlock) {
        const std::size_t end = std::min(start + kBlock, glyphs.size());
        map += std::to_string(end - start) + " begincidchar\n";
        for (std::size_t code = start; code < end; ++code)
            map += "<" + Hex(static_cast<unsigned int>(code), 4) + "> " + std::to_string(glyphs[code]) + "\n";
        map += "endcidchar\n";
    }
    map += "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
    const unsigned int object = file.Reserve();
    file.WriteStream(
        object, "/Type/CMap/CMapName/Codes/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>",
        std::move(map), PdfFile::Packing::kDeflate);
    return object;
}

void PdfFont::WriteProgram(PdfFile& file) const {
    const bool isCff = kind_ == Kind::kCff;
    std::vector<std::uint32_t> glyphs{0};
    for (const Entry& entry : entries_) glyphs.push_back(entry.glyph);
    const ORVFontSubset subset = face_.MakeSubset(glyphs, isCff ? "CFF " : "");
    const std::string_view bytes = subset.program.bytes;
    const unsigned int fontFile = file.Reserve();
    file.WriteStream(fontFile, isCff ? "/Subtype/CIDFontType0C" : "/Length1 " + std::to_string(bytes.size()),
                     std::string(bytes), PdfFile::Packing::kDeflate);

    const ORVFontBytes head = face_.GetTable("head");
    const double unit = 1000.0 / face_.GetUnitsPerEm();
    std::string descriptor = "<</Type/FontDescriptor/FontName/" + MakeName() + "/Flags " +
                             (face_.IsItalic() ? "68" : "4") + "/FontBBox[";
    for (const std::size_t at : {36U, 38U, 40U, 42U}) {
        AppendDecimal(descriptor, std::round(ReadSigned16(head.bytes, at) * unit), kPdfPlaces);
        descriptor += ' ';
    }
    descriptor += "]/ItalicAngle ";
    descriptor += face_.IsItalic() ? "-12" : "0";
    descriptor += "/Ascent ";
    AppendDecimal(descriptor, std::round(face_.GetAscent() * 1000.0), kPdfPlaces);
    descriptor += "/Descent ";
    AppendDecimal(descriptor, std::round(-face_.GetDescent() * 1000.0), kPdfPlaces);
    descriptor += "/CapHeight 700/StemV " + std::to_string(face_.GetWeight() >= 600 ? 120 : 80) +
                  (isCff ? "/FontFile3 " : "/FontFile2 ") + std::to_string(fontFile) + " 0 R>>";
    const unsigned int descriptorObject = file.Reserve();
    file.WriteObject(descriptorObject, descriptor);

    std::string descendant = "<</Type/Font/Subtype/CIDFontType";
    descendant += isCff ? '0' : '2';
    descendant += "/BaseFont/" + MakeName() +
                  "/CIDSystemInfo<</Registry(Adobe)/Ordering(Identity)/Supplement 0>>/FontDescriptor " +
                  PdfReference(descriptorObject) + "/DW 0/W[";
    std::string encoding = "/Identity-H";
    if (isCff) {
        // Glyphs are addressed by index in the font program, to which the encoding maps codes.
        encoding = " " + PdfReference(WriteEncoding(file, subset.glyphs));
        std::map<std::uint32_t, double> widths;
        for (std::size_t i = 0; i < entries_.size(); ++i) widths[subset.glyphs[i + 1]] = entries_[i].width;
        for (const auto& [glyph, width] : widths) {
            descendant += std::to_string(glyph) + "[";
            AppendDecimal(descendant, width, kPdfPlaces);
            descendant += "]";
        }
        descendant += "]>>";
    } else {
        // Glyph indices by code.
        std::string glyphNumbers;
        for (const std::uint32_t glyph : subset.glyphs) {
            glyphNumbers += static_cast<char>(glyph >> 8U);
            glyphNumbers += static_cast<char>(glyph);
        }
        const unsigned int glyphMap = file.Reserve();
        file.WriteStream(glyphMap, "", std::move(glyphNumbers), PdfFile::Packing::kDeflate);
        descendant += "1[";
        for (const Entry& entry : entries_) {
            AppendDecimal(descendant, entry.width, kPdfPlaces);
            descendant += ' ';
        }
        descendant += "]]/CIDToGIDMap " + PdfReference(glyphMap) + ">>";
    }
    const unsigned int descendantObject = file.Reserve();
    file.WriteObject(descendantObject, descendant);

    const unsigned int toUnicode = WriteToUnicode(file);
    file.WriteObject(object_, "<</Type/Font/Subtype/Type0/BaseFont/" + MakeName() + "/Encoding" + encoding +
                                  "/DescendantFonts[" + PdfReference(descendantObject) + "]/ToUnicode " +
                                  PdfReference(toUnicode) + ">>");
}

void PdfFont::WriteDrawn(PdfFile& file) const {
    constexpr double kGlyphSpace = 1000.0;  // units per em of the glyph procedures
    std::string procedures, names, widths;
    ORVMathBox2D box;
    ORVPrintPath path;
    for (unsigned int code = 1; code <= entries_.size(); ++code) {
        const Entry& entry = entries_[code - 1];
        path.Clear();
        ORVGlyphOutlineCollector collector(path, 1.0);
        face_.DrawGlyph(entry.glyph, kGlyphSpace, collector);
        ORVMathBox2D glyphBox;
        for (const ORVMathPoint2D& p : path.points) glyphBox.Add(p);
        std::string drawing;
        AppendDecimal(drawing, entry.width, kPdfPlaces);
        drawing += " 0 ";
        if (!glyphBox.IsEmpty()) {
            for (const double side : {glyphBox.xMin, glyphBox.yMin, glyphBox.xMax, glyphBox.yMax}) {
                AppendDecimal(drawing, side, kPdfPlaces);
                drawing += ' ';
            }
            box.Add({glyphBox.xMin, glyphBox.yMin});
            box.Add({glyphBox.xMax, glyphBox.yMax});
        } else {
            drawing += "0 0 0 0 ";
        }
        drawing += "d1\n";
        AppendPath(drawing, path);
        if (!path.IsEmpty()) drawing += "f\n";
        const unsigned int object = file.Reserve();
        file.WriteStream(object, "", std::move(drawing), PdfFile::Packing::kDeflate);
        const std::string name = "/g" + std::to_string(code);
        procedures += name + " " + std::to_string(object) + " 0 R";
        names += name;
        AppendDecimal(widths, entry.width, kPdfPlaces);
        widths += ' ';
    }
    const unsigned int toUnicode = WriteToUnicode(file);
    std::string font = "<</Type/Font/Subtype/Type3/FontMatrix[.001 0 0 .001 0 0]/FontBBox[";
    for (const double side : {box.xMin, box.yMin, box.xMax, box.yMax}) {
        AppendDecimal(font, box.IsEmpty() ? 0.0 : side, kPdfPlaces);
        font += ' ';
    }
    font += "]/Resources<<>>/CharProcs<<" + procedures + ">>/Encoding<</Type/Encoding/Differences[1" + names +
            "]>>/FirstChar 1/LastChar " + std::to_string(entries_.size()) + "/Widths[" + widths +
            "]/ToUnicode " + std::to_string(toUnicode) + " 0 R>>";
    file.WriteObject(object_, font);
}

void PdfFont::Write(PdfFile& file) const {
    if (entries_.empty()) return;  // found but never shown
    if (kind_ == Kind::kDrawn)
        WriteDrawn(file);
    else
        WriteProgram(file);
}

PdfFont& PdfFontTable::AddFont(const ORVFontFace& face, PdfFile& file) {
    const PdfFont::Kind kind = IsPlainTrueType(face) ? PdfFont::Kind::kTrueType
                               : IsPlainCff(face)    ? PdfFont::Kind::kCff
                                                     : PdfFont::Kind::kDrawn;
    fonts_.push_back(std::make_unique<PdfFont>(face, kind, file.Reserve()));
    latest_[&face] = fonts_.back().get();
    return *fonts_.back();
}

PdfFont& PdfFontTable::Find(const ORVFontFace& face, PdfFile& file) {
    const auto found = latest_.find(&face);
    return found == latest_.end() ? AddFont(face, file) : *found->second;
}

void PdfFontTable::WriteAll(PdfFile& file) const {
    for (const auto& font : fonts_) font->Write(file);
}
