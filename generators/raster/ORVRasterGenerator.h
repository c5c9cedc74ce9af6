// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "generators/raster/ORVBandSink.h"
#include "generators/raster/raster_options.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// Base of all raster formats: rasterises pages on white paper, band by band. Calls are collected in a
/// display list; EndPage renders bands of rows and passes them to the format's encoder, so memory grows with
/// the content, not the resolution. Links and identifiers are ignored.
class ORVRasterGenerator : public ORVPrintGenerator {
public:
    /// Maximum width and height of a page, in pixels.
    static constexpr double kLargestSide = 1'000'000.0;

    ORVRasterGenerator(std::unique_ptr<ORVBandSink> sink, const ORVRasterOptions& options);
    ~ORVRasterGenerator() override;

    /// The error, if any. Errors of the output are reported by the output itself.
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
