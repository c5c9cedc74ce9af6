// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_resources.h"

#include <string_view>

#include "generators/common/number_text.h"
#include "generators/pdf/pdf_file.h"
#include "generators/pdf/pdf_images.h"
#include "generators/pdf/pdf_syntax.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

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

/// Writes the tile of a pattern. `entries` ends inside the brackets of its matrix.
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
    const Tile tile{fill.pattern, {map.m11, map.m12, map.m21, map.m22, map.dx, map.dy}};
    if (const auto found = tiles_.find(tile); found != tiles_.end()) return found->second;

    const PdfImage& image = images.Find(*fill.pattern, false, file);
    NotePaint(!image.isGray, image.hasAlpha);
    const unsigned int object = file.Reserve();
    const std::string width = std::to_string(fill.pattern->GetWidth()),
                      height = std::to_string(fill.pattern->GetHeight());
    // Pattern coordinates are relative to default space, before any matrix of the content.
    std::string entries = "/Type/Pattern/PatternType 1/PaintType 1/TilingType 1/BBox[0 0 " + width + " " +
                          height + "]/XStep " + width + "/YStep " + height + "/Resources<</XObject<</I " +
                          PdfReference(image.object) + ">>>>/Matrix[";
    AppendPdfMap(entries, toDefault * map);
    WriteTile(object, entries, *fill.pattern, image, file);
    tiles_.emplace(tile, object);
    return object;
}

std::string PdfResources::MakeDictionary() const {
    std::string text = "<<";
    std::set<unsigned int> patterns = patterns_;
    for (const auto& [tile, object] : tiles_) patterns.insert(object);
    AppendNamedObjects(text, "/Font", 'F', fonts_);
    AppendNamedObjects(text, "/XObject", 'X', objects_);
    AppendNamedObjects(text, "/Pattern", 'P', patterns);
    AppendNamedObjects(text, "/Properties", 'L', layers_);
    if (!opacities_.empty() || !states_.empty()) {
        text += "/ExtGState<<";
        for (const auto& [fill, stroke] : opacities_) {
            text += PdfOpacityName(fill, stroke) + "<</ca ";
            AppendDecimal(text, fill / 255.0, kPdfPlaces);
            text += "/CA ";
            AppendDecimal(text, stroke / 255.0, kPdfPlaces);
            text += ">>";
        }
        for (const unsigned int state : states_)
            text += "/G" + std::to_string(state) + " " + PdfReference(state);
        text += ">>";
    }
    return text + ">>";
}
