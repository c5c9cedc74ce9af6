// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <optional>
#include <unordered_map>

#include "generators/pdf/pdf_content.h"
#include "platform/print/ORVPrintGenerator.h"

/// What of a page is being drawn: the page itself, and in it symbols, layers and their masks, one within the
/// other. Content goes to the innermost of them, and that to the one around it when it ends.
class PdfParts {
public:
    /// @param forms  the symbols that the document has; both must outlive this object
    PdfParts(PdfDocumentObjects& document, std::unordered_map<const void*, PdfForm>& forms, double width,
             double height)
        : document_(document), forms_(forms), page_(document, width, height) {}

    PdfContent& GetPage() { return page_; }
    /// What is being drawn on.
    PdfContent& GetTop() { return parts_.empty() ? page_ : *parts_.back().content; }
    /// The number of open parts of these kinds.
    unsigned int CountSymbols() const { return openSymbols_; }
    /// Masks and tiles, in which nothing leads anywhere.
    unsigned int CountMasksAndTiles() const { return openMasks_ + openTiles_; }

    /// @return false when the document has the symbol, which was then shown
    bool BeginSymbol(const ORVPrintSymbol& symbol);
    void BeginTiles(const ORVPrintTiles& tiles);
    void BeginLayer(const ORVPrintLayer& layer);
    /// Begins the mask of the layer that has just begun. @return false when there is no such layer
    bool BeginMask(const ORVPrintMask& mask);

    // Each returns false when what is to end is not what began last.
    bool EndSymbol() { return End(Kind::kSymbol); }
    bool EndTiles() { return End(Kind::kTiles); }
    bool EndLayer() { return End(Kind::kLayer); }
    bool EndMask() { return End(Kind::kMask); }
    /// Ends all that is still open.
    void EndAll();

private:
    enum class Kind { kSymbol, kTiles, kLayer, kMask };
    struct Part {
        Kind kind;
        ORVPrintSymbol symbol = {};
        ORVPrintTiles tiles = {};
        ORVPrintLayer layer = {};  ///< its box cut to that of its mask, once that has begun
        PdfLayerPaint paint = {};
        std::optional<PdfContent> content = {};
    };

    bool End(Kind kind);
    void FinishSymbol();
    void FinishTiles();
    void FinishLayer();
    void FinishMask();
    /// What shows the innermost part.
    PdfContent& GetNextToTop() { return parts_.size() < 2 ? page_ : *parts_[parts_.size() - 2].content; }

    PdfDocumentObjects& document_;
    std::unordered_map<const void*, PdfForm>& forms_;
    PdfContent page_;
    std::deque<Part> parts_;
    unsigned int openSymbols_ = 0, openTiles_ = 0, openMasks_ = 0;
};
