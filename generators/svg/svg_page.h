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

/// A page while it is written: the nesting of groups, links, clips and symbols, and what is drawn in them.
///
/// Some readers, orvprint among them, paint all that a use element places with the paint of that element. So
/// only symbols that have one style are written once, and each use states the style; of other symbols every
/// place has its own.
class SvgPage {
public:
    /// Opens the drawing. @param output  must outlive the page
    /// @param documentTitle  for pages without a title of their own
    SvgPage(ORVOutput& output, const ORVPrintPageInfo& info, std::string_view documentTitle);
    SvgPage(const SvgPage&) = delete;
    SvgPage& operator=(const SvgPage&) = delete;

    void BeginGroup(const ORVPrintGroup& group);
    /// @return false when the innermost thing that is open is no group
    bool EndGroup();
    void BeginClip(const ORVMathBox2D& box);
    /// @return false when the innermost thing that is open is no clip
    bool EndClip();
    void BeginClipPath(const ORVPrintClipPath& clip);
    void BeginLayer(const ORVPrintLayer& layer);
    /// @return false when the innermost thing that is open is no layer
    bool EndLayer();
    void BeginMask(const ORVPrintMask& mask);
    /// @return false when the innermost thing that is open is no mask
    bool EndMask();
    /// @param filter  has no inputs
    void BeginFilter(const ORVPrintFilter& filter);
    /// @return false when the innermost thing that is open is no filter
    bool EndFilter();
    /// @return what ORVPrintGenerator::BeginTiles returns
    int BeginTiles(const ORVPrintTiles& tiles);
    /// @return false when the innermost thing that is open is no tile
    bool EndTiles();
    /// @return what ORVPrintGenerator::BeginSymbol returns
    int BeginSymbol(const ORVPrintSymbol& symbol);
    /// @return false when no symbol is open
    bool EndSymbol();

    void DrawShape(const ORVPrintShape& shape);
    void DrawText(const ORVPrintText& text) { painter_.DrawText(text, spaces_.back().space); }
    void DrawImage(const ORVPrintImage& image) { painter_.DrawImage(image, spaces_.back().space); }

    /// False after a write error.
    bool IsGood() const { return writer_.IsGood(); }
    /// True when an image was left empty because there was no memory to encode it.
    bool IsOutOfMemory() const { return definitions_.IsOutOfMemory(); }
    /// Closes what is open, and the drawing. @return false when it could not be written
    bool Finish();

private:
    enum class Open : std::uint8_t { kNothing, kGroup, kLink, kClip, kLayer, kMask, kFilter, kTiles };
    struct OpenSpace {
        SvgSpace space;
        ORVMathAffine2D toOuter;
        const void* key = nullptr;  // of the symbol
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
    std::vector<std::string> covers_;  // of tiles that are open: what is covered with them
    ORVMathBox2D whole_;               // of the page
    std::string mask_;                 // of the layer that has just begun
    bool isInsideLink_ = false;
};
