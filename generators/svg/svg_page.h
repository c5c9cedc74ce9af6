// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "generators/svg/svg_definitions.h"
#include "generators/svg/svg_painter.h"
#include "generators/svg/svg_writer.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"

class ORVOutput;

/// A page being written: the nesting of groups, links, clips and symbols, and the content in them.
///
/// Some readers, including orvprint, paint all content of a use element with the paint of that element. Only
/// symbols with a single style are therefore shared, and each use states the style; other symbols are written
/// out at every place.
class SvgPage {
public:
    /// Writes the start of the document. @param output  must outlive the page
    /// @param documentTitle  for pages without a title
    SvgPage(ORVOutput& output, const ORVPrintPageInfo& info, std::string_view documentTitle);
    SvgPage(const SvgPage&) = delete;
    SvgPage& operator=(const SvgPage&) = delete;

    void BeginGroup(const ORVPrintGroup& group);
    /// @return false if the innermost open part is not a group
    bool EndGroup();
    void BeginClip(const ORVMathBox2D& box);
    /// @return false if the innermost open part is not a clip
    bool EndClip();
    void BeginClipPath(const ORVPrintClipPath& clip);
    void BeginLayer(const ORVPrintLayer& layer);
    /// @return false if the innermost open part is not a layer
    bool EndLayer();
    void BeginMask(const ORVPrintMask& mask);
    /// @return false if the innermost open part is not a mask
    bool EndMask();
    /// @param filter  must not have inputs
    void BeginFilter(const ORVPrintFilter& filter);
    /// @return false if the innermost open part is not a filter
    bool EndFilter();
    /// @return the result for ORVPrintGenerator::BeginTiles
    int BeginTiles(const ORVPrintTiles& tiles);
    /// @return false if the innermost open part is not a tile
    bool EndTiles();
    /// @return the result for ORVPrintGenerator::BeginSymbol
    int BeginSymbol(const ORVPrintSymbol& symbol);
    /// @return false if no symbol is open
    bool EndSymbol();

    void DrawShape(const ORVPrintShape& shape);
    void DrawText(const ORVPrintText& text) { painter_.DrawText(text, spaces_.back().space); }
    void DrawImage(const ORVPrintImage& image) { painter_.DrawImage(image, spaces_.back().space); }

    /// False after a write error.
    bool IsGood() const { return writer_.IsGood(); }
    /// True if an image was left empty because there was no memory to encode it.
    bool IsOutOfMemory() const { return definitions_.IsOutOfMemory(); }
    /// Closes all open parts and the document. @return false if it could not be written
    bool Finish();

private:
    enum class Open : std::uint8_t { kNothing, kGroup, kLink, kClip, kLayer, kMask, kFilter, kTiles };
    struct OpenSpace {
        SvgSpace space;
        ORVMathAffine2D toOuter;
        const void* key = nullptr;  // for a symbol
        bool isRecorded = false;
    };

    std::string BoxAttributes(const ORVMathBox2D& box, int places) const;
    void Enter(Open what);
    bool Leave(Open what);
    static std::string_view EndOf(Open what);
    ORVPrintPath BoxPath(const ORVMathBox2D& box) const;
    void BeginInline(const ORVMathAffine2D& map);
    void LetRecordGo();

    SvgWriter writer_;
    SvgSharedDefinitions definitions_{writer_};
    SvgPainter painter_{writer_, definitions_};
    std::vector<Open> open_;
    std::vector<OpenSpace> spaces_;
    std::vector<std::string> covers_;  // for each open tile: the shape covered with it
    ORVMathBox2D whole_;               // bounds of the page
    std::string mask_;                 // identifier of the mask for the layer that has just begun
    bool isInsideLink_ = false;
};
