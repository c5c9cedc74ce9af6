// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "generators/common/ORVFormatGenerator.h"
#include "generators/common/ORVFormatOptions.h"
#include "platform/print/ORVPrintGenerator.h"

class ORVOutput;

/// Writes PostScript (level 3 if the content requires it) or EPS with cairo: vectors, text in embedded fonts,
/// JPEG files unchanged. A user unit is 0.8 point. Effects that PostScript lacks, such as transparency,
/// become an image of that part of the page. Groups and links are ignored.
class ORVPostScriptGenerator final : public ORVFormatGenerator, public ORVPrintGenerator {
public:
    /// @param output        receives all pages as one part or, for EPS, one part per page; must outlive the
    ///                      generator
    /// @param options       images of transparent parts have at least 300 dots per inch
    /// @param encapsulated  writes EPS
    ORVPostScriptGenerator(ORVOutput& output, const ORVFormatOptions& options, bool encapsulated);
    ~ORVPostScriptGenerator() override;

    ORVPrintGenerator& Get() override { return *this; }
    const ORVFailure& GetFailure() const override;

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return 1; }
    int EndGroup() override { return 1; }
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override { return kGradients | kClipPaths; }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    struct State;
    std::unique_ptr<State> state_;
};
