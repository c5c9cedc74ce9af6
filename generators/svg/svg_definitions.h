// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "generators/svg/svg_writer.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Converts an identifier to one that SVG allows: without white space.
std::string SvgIdentifier(std::string_view id);

/// The identifiers of a page, and the definitions that are written once and referenced: clip paths, images,
/// patterns and symbols.
///
/// Some readers, including orvprint, only know definitions inside a group until the group ends. After that,
/// small images and symbols are defined again; large images are not duplicated.
class SvgSharedDefinitions {
public:
    explicit SvgSharedDefinitions(SvgWriter& writer) : writer_(writer) {}

    /// Appends an id attribute; nothing for an empty identifier. An identifier that occurs repeatedly is
    /// written only the first time.
    void AppendId(std::string& attributes, std::string_view given);
    /// Marks an identifier as used. @return false if it was used before
    bool TakeId(const std::string& id) { return ids_.insert(std::hash<std::string>()(id)).second; }

    /// Writes a clip path. @param places  decimal places of its coordinates
    /// @return its identifier
    std::string DefineClip(const ORVPrintPath& outline, int places);
    /// Returns the identifier of a clip path, writing it unless an equal one exists.
    /// @param places  decimal places of its coordinates
    std::string FindClipPath(const ORVPrintPath& outline, const ORVMathAffine2D& map, bool evenOdd,
                             int places);
    /// Returns the identifier of a gradient, writing it on first use. Gradients share stops.
    /// @param elementToPage  the transform of the painted element
    /// @return empty if the transformation cannot be drawn
    std::string FindGradient(const ORVPrintGradient& gradient, const ORVMathAffine2D& elementToPage);
    /// Returns the identifier of a filter, writing it on first use.
    /// @param everywhere  replaces an infinite region, in the filter's user units
    std::string FindFilter(const ORVPrintFilter& filter, const ORVMathBox2D& everywhere);
    /// New identifiers of a pattern or a mask that the caller will write.
    std::string NewPattern() { return NewId(Kind::kPattern); }
    std::string NewMask() { return NewId(Kind::kMask); }
    /// Returns the family name of a font embedded in the drawing, writing the font on first use; empty for
    /// installed fonts.
    std::string FindFont(const ORVFontFace& face);
    /// Returns the identifier of an image, writing it on first use.
    const std::string& FindImage(const ORVPixelImage& image);
    /// Returns the identifier of a fill's pattern, writing it on first use. @return empty if its
    /// transformation cannot be drawn
    /// @param elementToPage  the transform of the filled element
    std::string FindPattern(const ORVPrintFill& fill, const ORVMathAffine2D& elementToPage);

    /// A symbol that was drawn before.
    struct Symbol {
        std::string id;      ///< empty if it is not shared
        std::string style;   ///< style of its content
        double scale = 0.0;  ///< page units per symbol unit where it was written
    };
    /// @return null if it was not drawn before
    const Symbol* FindSymbol(const void* key) const;
    /// Writes a symbol whose content has a single style.
    const Symbol& DefineSymbol(const void* key, const SvgWriter::Record& record, double scale);
    /// Records that a symbol was drawn inline. An existing definition stays in use.
    void NoteSymbol(const void* key) { symbols_.try_emplace(key); }
    /// Records that a symbol cannot be shared.
    void NoteStyledSymbol(const void* key) { symbols_[key] = {}; }

    /// Elements around the following content. Definitions inside an element end with it.
    void EnterElement() { ++depth_; }
    void LeaveElement();

    /// True if an image was left empty because there was no memory to encode it.
    bool IsOutOfMemory() const { return isOutOfMemory_; }

private:
    enum class Kind : char {
        kClip = 'c',
        kFilter = 'f',
        kGradient = 'g',
        kImage = 'i',
        kMask = 'm',
        kPattern = 'p',
        kSymbol = 's'
    };
    struct Image {
        ORVRef<const ORVPixelImage> image;  // keeps the address from being reused
        std::string id;
    };
    struct Pattern {
        ORVRef<const ORVPixelImage> image;
        ORVMathAffine2D map;
        std::string id;
    };
    struct Scoped {
        std::size_t depth;  // nesting depth of its definition
        const void* key;    // image or symbol
        std::string id;
    };

    std::string NewId(Kind kind);
    const std::string* FindText(const std::string& text) const;
    void NoteText(std::string text, const std::string& id);
    void NoteDefinition(const void* key, const std::string& id);
    void NoteImage(const ORVPixelImage& image, const std::string& id);
    void PutAddress(const ORVPixelImage& image);

    SvgWriter& writer_;
    std::unordered_set<std::size_t> ids_;  // hashes of those used so far
    std::unordered_map<char, unsigned int> counts_;
    std::unordered_map<const void*, Symbol> symbols_;
    std::unordered_map<const ORVPixelImage*, Image> images_;
    std::unordered_map<const ORVPixelImage*, std::vector<Pattern>> patterns_;
    std::unordered_map<const char*, std::string> fonts_;  // family names by the address of the font's bytes
    ORVKeptFaces keptFaces_;
    // identifiers of clip paths, gradients and stops by content
    std::unordered_map<std::string, std::string> texts_;
    std::vector<Scoped> scoped_;  // defined inside open elements, innermost last
    std::size_t depth_ = 0;
    bool isOutOfMemory_ = false;
};
