#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/print/ORVPrintGenerator.h"

class ORVOutput;

/// Writes each page as a PNG picture on white paper. Links and identifiers have no place in it.
class ORVPngGenerator final : public ORVPrintGenerator {
public:
    /// Pixels of a page at most; past it, the page is refused.
    static constexpr std::uint64_t kPixelLimit = 200'000'000;

    /// @param output       receives one part a page; must outlive the generator
    /// @param dotsPerInch  greater than 0; at 90 a user unit is a pixel
    ORVPngGenerator(ORVOutput& output, double dotsPerInch);
    ~ORVPngGenerator() override;

    /// What went wrong; empty when nothing did, or when it was the output (which then says it).
    const std::string& GetError() const;

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return 1; }
    int EndGroup() override { return 1; }
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override { return 1; }

private:
    struct State;
    std::unique_ptr<State> state_;
};
