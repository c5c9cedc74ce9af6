// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVFont;
class ORVFontFace;
class ORVGlyphPaintSink;
struct ORVDocumentFont;
struct ORVFontChoice;
struct ORVFontQuery;
struct ORVGlyphColour;
struct ORVGlyphLayer;
struct ORVGlyphBitmap;
struct ORVShapedText;
struct ORVShapingParagraph;
struct ORVShapingPart;
struct ORVTextExtent;
struct ORVTextLayout;
struct ORVTextStyle;
struct ORVVariedDocumentFace;

/// A font of the catalogue with its names. Owned by the catalogue.
struct ORVFontRecord {
    const ORVFont* font = nullptr;
    const ORVFontFace* face = nullptr;
    std::string foundry, family, style, fullName, postScriptName;
};

/// Everything that needs the font libraries: catalogue, shaping, bitmap glyphs. It is a separate module,
/// loaded with the first text because many drawings have none. All functions are thread-safe. A function that
/// returns false has noted the reason (text_failure.h) and set no output. Throws std::bad_alloc when out of
/// memory.
class ORVFontSystem {
public:
    /// @param found  out: null when there is no such font
    [[nodiscard]] virtual bool FindByName(std::string_view name, const ORVFont*& found) = 0;
    [[nodiscard]] virtual bool FindByFamily(std::string_view family, bool alsoPlain,
                                            const ORVFont*& found) = 0;
    [[nodiscard]] virtual bool GetCount(int& count) = 0;
    /// @param record  out: null when there is no font `index`
    [[nodiscard]] virtual bool FindRecord(int index, const ORVFontRecord*& record) = 0;
    /// @param made  out: null when the name is taken or the file holds no outline font
    [[nodiscard]] virtual bool Register(std::string_view name, const std::string& faceFile,
                                        const ORVFont*& made) = 0;
    /// Whether a font of that name is installed that has only bitmaps and no outlines.
    [[nodiscard]] virtual bool HasBitmapFont(std::string_view family, bool& has) = 0;
    /// @return null when no usable font is installed
    [[nodiscard]] virtual const ORVFontFace* FindFace(const ORVFont& font, int weight) = 0;

    [[nodiscard]] virtual bool LayOut(std::string_view utf8, const ORVTextStyle& style,
                                      ORVTextLayout& layout) = 0;
    [[nodiscard]] virtual bool Measure(std::string_view utf8, const ORVTextStyle& style,
                                       ORVTextExtent& extent) = 0;
    [[nodiscard]] virtual ORVGlyphBitmap MakeGlyphBitmap(const ORVFontFace& face, std::uint32_t glyph,
                                                         double pixelsPerEm,
                                                         const ORVGlyphColour& colour) = 0;
    [[nodiscard]] virtual bool Choose(const ORVFontQuery& query, ORVFontChoice& choice) = 0;
    [[nodiscard]] virtual bool Shape(std::u32string_view text, std::span<const ORVShapingPart> parts,
                                     std::span<const ORVShapingParagraph> paragraphs,
                                     ORVShapedText& shaped) = 0;
    [[nodiscard]] virtual bool FindClusterParts(std::u32string_view text, std::vector<bool>& isPart) = 0;
    [[nodiscard]] virtual bool HasColours(const ORVFontFace& face) = 0;
    [[nodiscard]] virtual std::vector<ORVGlyphLayer> FindGlyphLayers(const ORVFontFace& face,
                                                                     std::uint32_t glyph) = 0;
    /// See ORVPaintGlyph. @param sink  null to test only
    [[nodiscard]] virtual bool PaintGlyph(const ORVFontFace& face, std::uint32_t glyph,
                                          ORVGlyphPaintSink* sink) = 0;
    /// See ORVOpenDocumentFont and ORVVaryDocumentFont.
    [[nodiscard]] virtual std::shared_ptr<const ORVFontFace> Open(ORVDocumentFont font) = 0;
    [[nodiscard]] virtual ORVVariedDocumentFace Vary(const ORVFontFace& face, const ORVFontQuery& query) = 0;
    [[nodiscard]] virtual bool HasFeature(const ORVFontFace& face, std::uint32_t tag) = 0;

protected:
    ~ORVFontSystem() = default;
};

inline constexpr char kFontModule[] = "liborvfonts.so";
inline constexpr char kFontSystemFactory[] = "orvGetFontSystem";
/// Type of the factory that the module exports. It returns the same object each time.
/// @param mayUseIndex  whether the list of installed faces may come from the face index; only the first call
/// counts
using ORVFontSystemFactory = ORVFontSystem* (*)(bool mayUseIndex);

/// The font system. Loads the module on the first call.
/// @return null when the module or one of its libraries cannot be loaded; the reason is noted
[[nodiscard]] ORVFontSystem* ORVGetFontSystem();

/// Enables (default) or disables the face index for the process.
void ORVUseFaceIndex(bool use);
