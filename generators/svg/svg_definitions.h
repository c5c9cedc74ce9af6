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

/// An identifier as SVG takes it: any characters but blanks.
std::string SvgIdentifier(std::string_view id);

/// The identifiers of a page, and what is written once under one and used by reference: clips, images,
/// patterns and symbols.
///
/// Some readers, orvprint among them, know what is defined in a group only until it ends. Afterwards small
/// images and symbols are defined again; large images stay single.
class SvgSharedDefinitions {
public:
    explicit SvgSharedDefinitions(SvgWriter& writer) : writer_(writer) {}

    /// Appends an id attribute; nothing for an empty identifier. What is drawn twice bears its identifier
    /// once.
    void AppendId(std::string& attributes, std::string_view given);
    /// Marks an identifier as given. @return false when it was
    bool TakeId(const std::string& id) { return ids_.insert(std::hash<std::string>()(id)).second; }

    /// Writes a clip. @param places  digits after the period of its coordinates
    /// @return its identifier
    std::string DefineClip(const ORVPrintPath& outline, int places);
    /// Writes a clip to the inside of an outline, when none was written that is the same.
    /// @param places  digits after the period of its coordinates
    /// @return its identifier
    std::string FindClipPath(const ORVPrintPath& outline, const ORVMathAffine2D& map, bool evenOdd,
                             int places);
    /// The identifier of a gradient, which is written when it is first asked for; its stops are written once.
    /// @param elementToPage  the transform of the element that is painted
    /// @return empty when its map cannot be drawn
    std::string FindGradient(const ORVPrintGradient& gradient, const ORVMathAffine2D& elementToPage);
    /// The identifier of a filter, which is written when it is first asked for.
    /// @param everywhere  what stands for an infinite region, in the filter's user units
    std::string FindFilter(const ORVPrintFilter& filter, const ORVMathBox2D& everywhere);
    /// The identifier of a mask that will be written.
    std::string NewPattern() { return NewId(Kind::kPattern); }
    std::string NewMask() { return NewId(Kind::kMask); }
    /// The family that stands for a font that the drawing brings, which is written when it is first asked
    /// for; empty for installed ones.
    std::string FindFont(const ORVFontFace& face);
    /// The identifier of an image, which is written when it is first asked for.
    const std::string& FindImage(const ORVPixelImage& image);
    /// The same of a fill's pattern. @return empty when its map cannot be drawn
    /// @param elementToPage  the transform of the element that is filled
    std::string FindPattern(const ORVPrintFill& fill, const ORVMathAffine2D& elementToPage);

    /// A symbol that has been drawn.
    struct Symbol {
        std::string id;      ///< empty when it is not written once
        std::string style;   ///< of what is in it
        double scale = 0.0;  ///< page units in one of its own where it was written
    };
    /// @return null for one that has not been drawn
    const Symbol* FindSymbol(const void* key) const;
    /// Writes a symbol that has one style.
    const Symbol& DefineSymbol(const void* key, const SvgWriter::Record& record, double scale);
    /// Notes that a symbol has been drawn where it stands; the one that is written already stays in use.
    void NoteSymbol(const void* key) { symbols_.try_emplace(key); }
    /// Notes that a symbol cannot be written once.
    void NoteStyledSymbol(const void* key) { symbols_[key] = {}; }

    /// Elements around what is written from now on, which end what is defined in them.
    void EnterElement() { ++depth_; }
    void LeaveElement();

    /// True when an image was left empty because there was no memory to encode it.
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
        ORVRef<const ORVPixelImage> image;  // keeps the address from being used again
        std::string id;
    };
    struct Pattern {
        ORVRef<const ORVPixelImage> image;
        ORVMathAffine2D map;
        std::string id;
    };
    struct Scoped {
        std::size_t depth;  // elements around it
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
    std::unordered_set<std::size_t> ids_;  // hashes of those given so far
    std::unordered_map<char, unsigned int> counts_;
    std::unordered_map<const void*, Symbol> symbols_;
    std::unordered_map<const ORVPixelImage*, Image> images_;
    std::unordered_map<const ORVPixelImage*, std::vector<Pattern>> patterns_;
    std::unordered_map<const char*, std::string> fonts_;  // families by the fonts' bytes
    ORVKeptFaces keptFaces_;
    std::unordered_map<std::string, std::string> texts_;  // identifiers of clips, gradients, stops by content
    std::vector<Scoped> scoped_;                          // defined within open elements, the innermost last
    std::size_t depth_ = 0;
    bool isOutOfMemory_ = false;
};
