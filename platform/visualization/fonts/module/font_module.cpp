// SPDX-License-Identifier: Apache-2.0

// The interface exported by the module: the font system of the process.

#include <memory>
#include <utility>

#include "platform/visualization/fonts/ORVDocumentFont.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/font_system.h"
#include "platform/visualization/fonts/module/document_font.h"
#include "platform/visualization/fonts/module/face_axes.h"
#include "platform/visualization/fonts/module/file_face.h"
#include "platform/visualization/fonts/module/font_catalogue.h"
#include "platform/visualization/fonts/module/font_choice.h"
#include "platform/visualization/fonts/module/font_failure.h"
#include "platform/visualization/fonts/module/fontconfig_faces.h"
#include "platform/visualization/fonts/module/glyph_bitmaps.h"
#include "platform/visualization/fonts/module/painted_glyphs.h"
#include "platform/visualization/fonts/module/span_shaper.h"
#include "platform/visualization/fonts/module/text_shaper.h"

namespace {

class FontSystem final : public ORVFontSystem {
public:
    bool FindByName(std::string_view name, const ORVFont*& found) override {
        return NotingFailure([&] { found = FontCatalogue::Get().FindByName(name); });
    }
    bool FindByFamily(std::string_view family, bool alsoPlain, const ORVFont*& found) override {
        return NotingFailure([&] { found = FontCatalogue::Get().FindByFamily(family, alsoPlain); });
    }
    bool GetCount(int& count) override {
        return NotingFailure([&] { count = FontCatalogue::Get().Count(); });
    }
    bool FindRecord(int index, const ORVFontRecord*& record) override {
        return NotingFailure([&] { record = FontCatalogue::Get().EntryAt(index); });
    }
    bool Register(std::string_view name, const std::string& faceFile, const ORVFont*& made) override {
        return NotingFailure([&] { made = FontCatalogue::Get().Register(name, faceFile); });
    }
    bool HasBitmapFont(std::string_view family, bool& has) override {
        return NotingFailure([&] { has = ::HasBitmapFont(family); });
    }
    const ORVFontFace* FindFace(const ORVFont& font, int weight) override {
        const ORVFontFace* face = nullptr;
        NotingFailure([&] { face = FontCatalogue::Get().FindFace(font, weight); });
        return face;
    }
    bool LayOut(std::string_view utf8, const ORVTextStyle& style, ORVTextLayout& layout) override {
        return NotingFailure([&] { layout = LayOutText(utf8, style); });
    }
    bool Measure(std::string_view utf8, const ORVTextStyle& style, ORVTextExtent& extent) override {
        return NotingFailure([&] { extent = MeasureText(utf8, style); });
    }
    ORVGlyphBitmap MakeGlyphBitmap(const ORVFontFace& face, std::uint32_t glyph, double pixelsPerEm,
                                   const ORVGlyphColour& colour) override {
        // The file was opened during layout, so a failure here does not occur in practice.
        ORVGlyphBitmap answer;
        const auto& file = static_cast<const FileFace&>(face);
        if (!NotingFailure([&] { answer = ::MakeGlyphBitmap(file, glyph, pixelsPerEm, colour); })) return {};
        return answer;
    }
    bool Choose(const ORVFontQuery& query, ORVFontChoice& choice) override {
        return NotingFailure([&] { choice = ChooseFont(FontCatalogue::Get(), query); });
    }
    bool Shape(std::u32string_view text, std::span<const ORVShapingPart> parts,
               std::span<const ORVShapingParagraph> paragraphs, ORVShapedText& shaped) override {
        return NotingFailure([&] { ShapeText(text, parts, paragraphs, shaped); });
    }
    bool FindClusterParts(std::u32string_view text, std::vector<bool>& isPart) override {
        return NotingFailure([&] { ::FindClusterParts(text, isPart); });
    }
    bool HasColours(const ORVFontFace& face) override {
        bool has = false;
        return NotingFailure([&] { has = ::HasColours(static_cast<const FileFace&>(face)); }) && has;
    }
    std::vector<ORVGlyphLayer> FindGlyphLayers(const ORVFontFace& face, std::uint32_t glyph) override {
        std::vector<ORVGlyphLayer> layers;
        const auto& file = static_cast<const FileFace&>(face);
        if (!NotingFailure([&] { layers = ::FindGlyphLayers(file, glyph); })) return {};
        return layers;
    }
    bool PaintGlyph(const ORVFontFace& face, std::uint32_t glyph, ORVGlyphPaintSink* sink) override {
        bool isPainted = false;
        const auto& file = static_cast<const FileFace&>(face);
        return NotingFailure([&] { isPainted = ::PaintGlyph(file, glyph, sink); }) && isPainted;
    }
    std::shared_ptr<const ORVFontFace> Open(ORVDocumentFont font) override {
        std::shared_ptr<const ORVFontFace> face;
        if (!NotingFailure([&] { face = OpenDocumentFont(std::move(font)); })) return nullptr;
        return face;
    }
    ORVVariedDocumentFace Vary(const ORVFontFace& face, const ORVFontQuery& query) override {
        ORVVariedDocumentFace varied;
        const bool isVaried = NotingFailure([&] {
            const auto& file = static_cast<const FileFace&>(face);
            FileFace::Description description = file.GetDescription();
            AxisValues axes = FindAxisValues(file, query, description);
            varied.isSlanted = axes.isSlanted;
            varied.dependsOnSize = axes.dependsOnSize;
            if (!axes.isDefault)
                varied.face =
                    std::make_shared<const FileFace>(file, std::move(description), std::move(axes.values));
        });
        return isVaried ? varied : ORVVariedDocumentFace();
    }
    bool HasFeature(const ORVFontFace& face, std::uint32_t tag) override {
        bool has = false;
        return NotingFailure([&] { has = HasFontFeature(face, tag); }) && has;
    }
};

}  // namespace

extern "C" __attribute__((visibility("default"))) ORVFontSystem* orvGetFontSystem(bool mayUseIndex) {
    FontCatalogue::LetUseIndex(mayUseIndex);
    static FontSystem* const system = new FontSystem;
    return system;
}
