// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "interpreters/svg2/document/Document.h"
#include "interpreters/svg2/tree/Scene.h"
#include "interpreters/svg2/values/view_box.h"
#include "platform/system/ORVRef.h"
#include "platform/system/ORVUnicodeString.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace svg2 {

class Images;
class Scene;

/// The content of an "image" element: pixels, a drawing, or nothing if it cannot be read.
struct ImageContent {
    ImageContent();
    ~ImageContent();

    ORVRef<const ORVPixelImage> pixels;
    bool isCounted = false;  ///< already counted by the drawing's budget
    std::unique_ptr<Document> drawing;
    // Of the drawing; created when it is first drawn:
    std::unique_ptr<Scene> scene;
    std::unique_ptr<Images> images;
};

/// An image and its placement on an element.
struct PlacedImage {
    ImageContent* content = nullptr;
    Viewport natural;  ///< intrinsic size, in px
    Rectangle place;   ///< area to fit it into, in the element's user units
};

/// The images of a document, each read once. Files are read as far as the host's access policy allows.
class Images {
public:
    /// @param documentPath  base of relative references; may be empty
    /// @param depth         nesting depth of drawings within drawings
    explicit Images(ORVUnicodeString documentPath, int depth = 0)
        : documentPath_(std::move(documentPath)), depth_(depth) {}

    /// @param reference  file name or data URI; must outlive this object
    ImageContent& Find(std::string_view reference);

    /// Finds the content and placement of an "image" element.
    /// @return false if it draws nothing
    bool Place(const Scene& scene, ElementIndex element, const Style& style, const Viewport& viewport,
               PlacedImage& placed);

    /// Finds the drawing of a glyph in the font's table "SVG ". Within the drawing of a glyph there are none.
    /// @param element  out: what draws the glyph
    /// @return null if there is none
    ImageContent* FindGlyph(const ORVFontFace& face, std::uint32_t glyph, ElementIndex& element);

    int GetDepth() const { return depth_; }
    /// Maximum nesting of drawings within drawings; deeper ones are not read.
    static constexpr int kGreatestDepth = 8;

private:
    void Load(std::string_view reference, ImageContent& content) const;
    void Decode(std::string bytes, ImageContent& content) const;

    ORVUnicodeString documentPath_;
    int depth_;
    std::unordered_map<std::string_view, ImageContent> contents_;
    std::unordered_map<const ORVFontFace*, ORVFontBytes> glyphTables_;
    std::unordered_map<const char*, ImageContent> glyphDocuments_;  // by the address in a table
    /// Cache by the address of the reference: data URIs are long, and elements are drawn repeatedly.
    std::unordered_map<const char*, std::pair<std::size_t, ImageContent*>> byPlace_;
};

}  // namespace svg2
