// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "generators/common/ORVPageRecording.h"
#include "generators/flatten/clear_pixels.h"
#include "generators/flatten/filter_plan.h"
#include "generators/flatten/lowered_images.h"
#include "generators/raster/ORVRasterGenerator.h"
#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// Options for rendering filters as images.
struct ORVFilterOptions {
    /// Resolution of the images. Use that of a raster device, so that pixels coincide. A filter that would
    /// need too much memory gets a lower resolution.
    double dotsPerInch = 300.0;
    /// Resolution that the filters of a page may be lowered to when they take a lot of work, for formats
    /// without pixels of their own; 0 if they may not be lowered for that.
    double leastDotsPerInch = 0.0;
    /// What counts as a lot of work: pixels touched by all filters of a page.
    double fullWork = 5e9;
    /// Maximum pixels of an image; larger ones cause the page to be refused.
    std::uint64_t pixelLimit = 4'000'000'000;
    /// Maximum pixels of all images of a document.
    std::uint64_t outputPixelLimit = 1'000'000'000'000;
    /// Limit of painting and filtering, in pixels.
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;
    /// Rendering threads; 0 for one per processor.
    unsigned int threads = 0;
};

/// Options of a raster generator for a ClearPixelSink, with pages measured in pixels.
ORVRasterOptions ORVClearRaster(const ORVFilterOptions& options);

/// Renders filters for a generator that does not support them. The content of a filter is recorded; EndFilter
/// draws its visible part on transparent pixels, filters them and passes on one image. All other calls are
/// passed on unchanged.
///
/// A generator with kFilters gets the filters that have no inputs. Groups inside rendered filters are passed
/// on empty.
class ORVFilterImages final : public ORVPrintGenerator {
public:
    /// @param target  must outlive this object
    ORVFilterImages(ORVPrintGenerator& target, const ORVFilterOptions& options);
    ~ORVFilterImages() override;

    /// Sets the size of page units, for pages that are not measured in user units.
    void SetUnitsPerInch(double units) { unitsPerInch_ = units; }

    /// The error that occurred here, if any. Errors of the target are not included.
    const ORVFailure& GetFailure() const { return failure_; }
    /// Filters so far that were computed at a lower resolution. Filters inside others do not count.
    const ORVLoweredImages& GetLowered() const { return lowered_; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override { return target_.GetPowers() | kFilters; }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override;
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    int BeginFilter(const ORVPrintFilter& filter) override;
    int EndFilter() override;
    int BeginFilterInput() override;
    int EndFilterInput() override;
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int BeginTiles(const ORVPrintTiles& tiles) override;
    int EndTiles() override;
    int EndSymbol() override;
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    /// A filter whose content is being recorded.
    struct Taken;
    /// What remains for filters to spend, shared with the filters inside them.
    struct Budget;
    ORVFilterImages(ORVPrintGenerator& target, const ORVFilterOptions& options, Budget* budget);

    template <class Action>
    int Guard(Action action);
    template <class Call>
    int Pass(Call call);
    template <class Call>
    int BeginPart(const ORVMathBox2D& box, Call call);
    template <class Call>
    int EndPart(Call call);
    const ORVMathBox2D& Shown() const { return shown_.empty() ? page_ : shown_.back(); }
    double SymbolScale() const { return symbolScales_.empty() ? 1.0 : symbolScales_.back(); }
    /// Receiver of content that is being recorded.
    ORVPrintGenerator& Record();
    int DrawTaken();
    bool FitPlan(const ORVPrintFilter& filter, const ORVMathBox2D& content, FilterPlan& plan) const;
    int DrawPixels(ORVPageRecording& recording, bool hasFilters, const FilterGrid& grid, const FilterBox& box,
                   FilterPixels& pixels);
    int Hand(FilterPixels pixels, const FilterGrid& grid);
    int HandTexts();
    int Refuse(const std::string& text);

    ORVPrintGenerator& target_;
    const ORVFilterOptions options_;
    ORVFailure failure_;
    ORVLoweredImages lowered_;
    std::unique_ptr<Budget> ownBudget_;
    Budget* const budget_;

    ORVMathBox2D page_;
    unsigned int pageNumber_ = 0;
    double imagePixels_ = 0.0;          // of the current page so far
    double unitsPerInch_ = 90.0;        // of the current page; inside another filter, page units are pixels
    std::vector<ORVMathBox2D> shown_;   // visible area of each open part
    std::vector<double> symbolScales_;  // for each open symbol: page units per symbol unit
    std::unique_ptr<Taken> taken_;      // null outside of filters

    // Renderer of filter content, created on first use. The inner stage handles nested filters.
    ClearPixelSink* sink_ = nullptr;
    std::unique_ptr<ORVRasterGenerator> raster_;
    std::unique_ptr<ORVFilterImages> inner_;
};
