// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/Images.h"

#include <new>
#include <string>
#include <utility>

#include "interpreters/svg2/document/outer_files.h"
#include "interpreters/svg2/document/parsing.h"
#include "interpreters/svg2/text/glyph_documents.h"
#include "interpreters/svg2/tree/Scene.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/system/gzip.h"
#include "platform/visualization/images/module_images.h"

namespace svg2 {
namespace {

/// Decompresses gzip data in place.
/// @return false if they are damaged or too large
bool Unpack(std::string& bytes) {
    if (!IsGzip(bytes)) return true;
    GrowingBytes unpacked;
    std::string error;
    if (UnpackGzip(bytes, UnpackLimits::InForce(), unpacked, error) != UnpackResult::kUnpacked) return false;
    bytes = unpacked.GetView();
    return true;
}

/// @return null if the bytes are not an SVG drawing
std::unique_ptr<Document> ParseDrawing(std::string bytes) {
    if (!Unpack(bytes)) return nullptr;
    auto drawing = ParseDocument(std::move(bytes));
    return drawing && drawing->IsSvg() ? std::move(drawing) : nullptr;
}

}  // namespace

ImageContent::ImageContent() = default;
ImageContent::~ImageContent() = default;

ImageContent& Images::Find(std::string_view reference) {
    auto& [length, known] = byPlace_[reference.data()];
    if (known && length == reference.size()) return *known;
    const auto [entry, isNew] = contents_.try_emplace(reference);
    if (isNew) {
        try {
            Load(reference, entry->second);
        } catch (...) {
            contents_.erase(entry);  // an image that was not read must not be cached as invalid
            throw;
        }
    }
    length = reference.size();
    known = &entry->second;
    return *known;
}

ImageContent* Images::FindGlyph(const ORVFontFace& face, std::uint32_t glyph, ElementIndex& element) {
    if (depth_ >= kGreatestDepth) return nullptr;
    auto table = glyphTables_.find(&face);
    if (table == glyphTables_.end()) table = glyphTables_.emplace(&face, face.GetTable("SVG ")).first;
    const std::string_view bytes = FindGlyphDocument(table->second.bytes, glyph);
    if (bytes.empty()) return nullptr;
    auto entry = glyphDocuments_.find(bytes.data());
    if (entry == glyphDocuments_.end()) {
        // Parsed first: what ran out of memory must not be known as invalid.
        auto drawing = ParseDrawing(std::string(bytes));
        entry = glyphDocuments_.try_emplace(bytes.data()).first;
        entry->second.drawing = std::move(drawing);
    }
    ImageContent& content = entry->second;
    if (!content.drawing) return nullptr;
    element = content.drawing->FindById("glyph" + std::to_string(glyph));
    return element == kNoElement ? nullptr : &content;
}

void Images::Load(std::string_view reference, ImageContent& content) const {
    // Drawings inside drawings may use data URIs only.
    const bool isWithin = EqualsIgnoringCase(reference.substr(0, 5), "data:");
    std::string bytes;
    if ((depth_ == 0 || isWithin) && ReadOuterFile(reference, documentPath_, bytes))
        Decode(std::move(bytes), content);
}

// The format is detected from the content; the media type of the reference is ignored.
void Images::Decode(std::string bytes, ImageContent& content) const {
    using Reader = ORVPixelImage* (*)(const void*, std::size_t, int);
    for (const Reader reader :
         {Reader(ReadMemoryPNGPixelImage), Reader(ReadMemoryJPEGPixelImage), Reader(ReadMemBMPPixelImage)}) {
        if (ORVPixelImage* image = reader(bytes.data(), bytes.size(), 0)) {
            content.pixels = ORVRef<const ORVPixelImage>(image);
            return;
        }
        if (ORVPixelImage::RanOutOfMemory()) throw std::bad_alloc();
    }
    content.pixels = ORVRef<const ORVPixelImage>(ReadMemoryModuleImage(bytes.data(), bytes.size()));
    if (!content.pixels && ORVPixelImage::RanOutOfMemory()) throw std::bad_alloc();
    if (!content.pixels && depth_ < kGreatestDepth) content.drawing = ParseDrawing(std::move(bytes));
}

}  // namespace svg2
