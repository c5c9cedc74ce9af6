// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "generators/raster/ORVBandSink.h"
#include "generators/raster/raster_options.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// Draws pages as pixels on white paper, band by band: what all formats of pixels have in common. While a
/// page is drawn its content is noted; when it ends, bands of rows are drawn and handed to the format's
/// encoder, so that memory goes with the content and not with the resolution. Links and identifiers have no
/// place in it.
class ORVRasterGenerator : public ORVPrintGenerator {
public:
    /// No page is wider or higher (pixels).
    static constexpr double kLargestSide = 1'000'000.0;

    ORVRasterGenerator(std::unique_ptr<ORVBandSink> sink, const ORVRasterOptions& options);
    ~ORVRasterGenerator() override;

    /// What went wrong; empty when nothing did, or when it was the output (which then says it).
    const ORVFailure& GetFailure() const;
    const std::string& GetError() const { return GetFailure().text; }

    unsigned int GetPowers() const override {
        return kGradients | kClipPaths | kLayers | kBlendModes | kMasks;
    }
    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return 1; }
    int EndGroup() override { return 1; }
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    struct State;
    std::unique_ptr<State> state_;
};
