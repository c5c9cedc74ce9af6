#include "generators/pdf/pdf_resources.h"

#include <algorithm>
#include <string_view>

#include "generators/common/number_text.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_images.h"
#include "generators/pdf/pdf_syntax.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

bool IsSame(const ORVMathAffine2D& a, const ORVMathAffine2D& b) {
    return a.m11 == b.m11 && a.m12 == b.m12 && a.m21 == b.m21 && a.m22 == b.m22 && a.dx == b.dx &&
           a.dy == b.dy;
}

void AppendNamedObjects(std::string& text, std::string_view kind, char prefix,
                        const std::set<unsigned int>& objects) {
    if (objects.empty()) return;
    text += kind;
    text += "<<";
    for (const unsigned int object : objects) {
        text += '/';
        text += prefix;
        text += std::to_string(object) + " ";
        AppendPdfReference(text, object);
    }
    text += ">>";
}

/// Writes the tile of a pattern whose entries so far end within its matrix's brackets.
void WriteTile(unsigned int object, const std::string& entries, const ORVPixelImage& tile,
               const PdfImage& image, PdfFile& file) {
    const std::string width = std::to_string(tile.GetWidth()), height = std::to_string(tile.GetHeight());
    std::string content = width + " 0 0 -" + height + " 0 " + height + " cm ";
    if (image.isTurned) {
        AppendPdfMap(content, image.turn);
        content += "cm ";
    }
    file.WriteStream(object, entries + "]", content + "/I Do\n", PdfFile::Packing::kStored);
}

}  // namespace

std::string PdfOpacityName(int fill, int stroke) {
    return "/A" + std::to_string(fill) + "_" + std::to_string(stroke);
}

void PdfResources::AddOpacity(int fill, int stroke) {
    opacities_.emplace(fill, stroke);
    isTransparent_ |= fill != 255 || stroke != 255;
}

void PdfResources::NotePaint(bool isColoured, bool isTransparent) {
    isColoured_ |= isColoured;
    isTransparent_ |= isTransparent;
}

unsigned int PdfResources::FindPattern(const ORVPrintFill& fill, const ORVMathAffine2D& toDefault,
                                       PdfImageTable& images, PdfFile& file) {
    const ORVMathAffine2D& map = fill.patternToPage;
    const auto found = std::find_if(patterns_.begin(), patterns_.end(), [&](const Pattern& pattern) {
        return pattern.image == fill.pattern && IsSame(pattern.map, map);
    });
    if (found != patterns_.end()) return found->object;

    const PdfImage& image = images.Find(*fill.pattern, false, file);
    NotePaint(!image.isGray, image.hasAlpha);
    const unsigned int object = file.Reserve();
    const std::string width = std::to_string(fill.pattern->GetWidth()),
                      height = std::to_string(fill.pattern->GetHeight());
    // A pattern's coordinates are those before any map of the content it is used in.
    std::string entries = "/Type/Pattern/PatternType 1/PaintType 1/TilingType 1/BBox[0 0 " + width + " " +
                          height + "]/XStep " + width + "/YStep " + height + "/Resources<</XObject<</I " +
                          PdfReference(image.object) + ">>>>/Matrix[";
    AppendPdfMap(entries, toDefault * map);
    WriteTile(object, entries, *fill.pattern, image, file);
    patterns_.push_back({fill.pattern, map, object});
    return object;
}

std::string PdfResources::MakeDictionary() const {
    std::string text = "<<";
    std::set<unsigned int> patterns;
    for (const Pattern& pattern : patterns_) patterns.insert(pattern.object);
    AppendNamedObjects(text, "/Font", 'F', fonts_);
    AppendNamedObjects(text, "/XObject", 'X', objects_);
    AppendNamedObjects(text, "/Pattern", 'P', patterns);
    if (!opacities_.empty()) {
        text += "/ExtGState<<";
        for (const auto& [fill, stroke] : opacities_) {
            text += PdfOpacityName(fill, stroke) + "<</ca ";
            AppendDecimal(text, fill / 255.0, kPdfPlaces);
            text += "/CA ";
            AppendDecimal(text, stroke / 255.0, kPdfPlaces);
            text += ">>";
        }
        text += ">>";
    }
    return text + ">>";
}
