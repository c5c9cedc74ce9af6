// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <optional>
#include <unordered_map>

#include "generators/pdf/pdf_content.h"
#include "platform/print/ORVPrintGenerator.h"

/// The stack of content being drawn: the page and, nested in it, symbols, layers and masks. Content goes to
/// the innermost part, which is added to the part around it when it ends.
class PdfParts {
public:
    /// @param forms  the symbols of the document; must outlive this object, as must `document`
    PdfParts(PdfDocumentObjects& document, std::unordered_map<const void*, PdfForm>& forms, double width,
             double height)
        : document_(document), forms_(forms), page_(document, width, height) {}

    PdfContent& GetPage() { return page_; }
    /// The content being drawn on.
    PdfContent& GetTop() { return parts_.empty() ? page_ : *parts_.back().content; }
    /// Number of open symbols.
    unsigned int CountSymbols() const { return openSymbols_; }
    /// Number of open masks and tiles, in which links are ignored.
    unsigned int CountMasksAndTiles() const { return openMasks_ + openTiles_; }

    /// @return false if the document already has the symbol, which was then shown
    bool BeginSymbol(const ORVPrintSymbol& symbol);
    void BeginTiles(const ORVPrintTiles& tiles);
    void BeginLayer(const ORVPrintLayer& layer);
    /// Begins the mask of the layer that has just begun. @return false if there is no such layer
    bool BeginMask(const ORVPrintMask& mask);

    // Each returns false if the innermost open part is of another kind.
    bool EndSymbol() { return End(Kind::kSymbol); }
    bool EndTiles() { return End(Kind::kTiles); }
    bool EndLayer() { return End(Kind::kLayer); }
    bool EndMask() { return End(Kind::kMask); }
    /// Ends all open parts.
    void EndAll();

private:
    enum class Kind { kSymbol, kTiles, kLayer, kMask };
    struct Part {
        Kind kind;
        ORVPrintSymbol symbol = {};
        ORVPrintTiles tiles = {};
        ORVPrintLayer layer = {};  ///< its box is clipped to that of its mask, once the mask has begun
        PdfLayerPaint paint = {};
        std::optional<PdfContent> content = {};
    };

    bool End(Kind kind);
    void FinishSymbol();
    void FinishTiles();
    void FinishLayer();
    void FinishMask();
    /// The content that shows the innermost part.
    PdfContent& GetNextToTop() { return parts_.size() < 2 ? page_ : *parts_[parts_.size() - 2].content; }

    PdfDocumentObjects& document_;
    std::unordered_map<const void*, PdfForm>& forms_;
    PdfContent page_;
    std::deque<Part> parts_;
    unsigned int openSymbols_ = 0, openTiles_ = 0, openMasks_ = 0;
};
