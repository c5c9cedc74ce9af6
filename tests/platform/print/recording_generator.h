// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

/// Records drawing calls as text, one line per call, in page coordinates (y down). Numbers have up to three
/// decimals. For example
///     document "title" 1
///     page 1 100x50
///     fill #ff0000 M0,0 L10,0 L10,10 Z
///     stroke #000000 w1 M0,0 L10,0
///     symbol 1 [1 0 0 1 20 30]
///     fill linear reflect 0,0 1,0 [10 0 0 5 0 0] 0 #ff0000 1 #0000ff@128 M0,0 L10,0 L10,10 Z
///     layer 0.5 multiply 0,0 to 10,10
class RecordingGenerator final : public ORVPrintGenerator {
public:
    const std::vector<std::string>& GetLines() const { return lines_; }
    /// The lines of shapes, texts and images only.
    std::vector<std::string> GetDrawn() const;
    /// All lines, separated by line breaks.
    std::string GetText() const;
    /// Makes every call from the `number`-th on (counted from 1) fail with -99.
    void FailAt(std::size_t number) { failAt_ = number; }
    /// Accepts symbols, numbered in order of definition; their content is in their own coordinates.
    void TakeSymbols() { takesSymbols_ = true; }
    /// Requests the identifiers of shapes, which are appended to their lines.
    void KeepIdentifiers() { keepsIdentifiers_ = true; }
    /// Limits the powers; by default all are supported.
    void SetPowers(unsigned int powers) { powers_ = powers; }
    /// How often a symbol was announced, accepted or not.
    std::size_t GetAnnouncementCount() const { return announcements_; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override { return Add("end group"); }
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override { return Add("end clip"); }
    unsigned int GetPowers() const override { return powers_; }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override { return Add("end clip path"); }
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override { return Add("end layer"); }
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override { return Add("end mask"); }
    int BeginFilter(const ORVPrintFilter& filter) override;
    int EndFilter() override { return Add("end filter"); }
    int BeginFilterInput() override;
    int EndFilterInput() override { return Add("end input"); }
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int EndSymbol() override { return Add("end symbol"); }
    bool KeepsIdentifiers() const override { return keepsIdentifiers_; }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override { return Add("end page"); }
    int EndDocument() override { return Add("end document"); }

private:
    int Add(std::string line);

    std::vector<std::string> lines_;
    std::size_t calls_ = 0;
    std::size_t failAt_ = 0;
    unsigned int powers_ = kGradients | kClipPaths | kLayers | kBlendModes | kMasks | kFilters;
    bool takesSymbols_ = false, keepsIdentifiers_ = false;
    std::size_t announcements_ = 0;
    std::vector<const void*> symbols_;
};
