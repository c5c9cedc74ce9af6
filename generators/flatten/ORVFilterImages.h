// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "generators/common/ORVPageRecording.h"
#include "generators/flatten/clear_pixels.h"
#include "generators/flatten/filter_plan.h"
#include "generators/raster/ORVRasterGenerator.h"
#include "platform/print/ORVPrintFilter.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// How content of filters becomes images.
struct ORVFilterOptions {
    /// Of the images: that of the device, if it has pixels, so that theirs are the device's. A filter that
    /// would take too much memory gets a lower resolution.
    double dotsPerInch = 300.0;
    std::uint64_t pixelLimit = 4'000'000'000;            ///< of an image; past it, the page is refused
    std::uint64_t outputPixelLimit = 1'000'000'000'000;  ///< of all images of a document
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;  ///< pixels that filters may touch
    unsigned int threads = 0;  ///< that draw an image; 0 for as many as the machine has processors
};

/// Stands before a generator and does filters for it. Content of a filter is noted; when the filter ends,
/// what can be seen of it is drawn on transparent pixels, which are filtered and handed on as one image. All
/// else goes through as it came.
///
/// A generator that has filters itself gets those that have no inputs. Groups in filters go through and then
/// hold nothing.
class ORVFilterImages final : public ORVPrintGenerator {
public:
    /// @param target  must outlive this object
    ORVFilterImages(ORVPrintGenerator& target, const ORVFilterOptions& options);
    ~ORVFilterImages() override;

    /// What went wrong here; empty when nothing did, or when it was the target.
    const ORVFailure& GetFailure() const { return failure_; }

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
    /// A filter whose content is being noted.
    struct Taken;
    /// What filters may still cost, here and in filters within them.
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
    /// Where content goes that is noted.
    ORVPrintGenerator& Record();
    int DrawTaken();
    bool FitPlan(const ORVPrintFilter& filter, const ORVMathBox2D& content, FilterPlan& plan) const;
    int DrawPixels(ORVPageRecording& recording, bool hasFilters, const FilterGrid& grid, const FilterBox& box,
                   FilterPixels& pixels);
    int Hand(const FilterPixels& pixels, const FilterGrid& grid);
    int HandTexts();
    int Refuse(const std::string& text);

    ORVPrintGenerator& target_;
    const ORVFilterOptions options_;
    ORVFailure failure_;
    std::unique_ptr<Budget> ownBudget_;
    Budget* const budget_;

    ORVMathBox2D page_;
    unsigned int pageNumber_ = 0;
    double imagePixels_ = 0.0;          // of the page so far
    double unitsPerInch_ = 90.0;        // of the page, whose units are pixels within another filter
    std::vector<ORVMathBox2D> shown_;   // of what is begun: what of the page can be seen
    std::vector<double> symbolScales_;  // of the symbols that are open: pages' units in one of theirs
    std::unique_ptr<Taken> taken_;      // null while none is

    // What content is drawn by, made when it is first needed. The inner stage is for filters in filters.
    ClearPixelSink* sink_ = nullptr;
    std::unique_ptr<ORVRasterGenerator> raster_;
    std::unique_ptr<ORVFilterImages> inner_;
};
