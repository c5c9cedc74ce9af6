// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "generators/common/ORVColourMode.h"
#include "generators/common/ORVPageRecording.h"
#include "generators/common/generator_powers.h"
#include "generators/flatten/flat_pixels.h"
#include "generators/flatten/lowered_images.h"
#include "generators/raster/ORVRasterGenerator.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// Options for rendering parts of pages as images.
struct ORVFlattenOptions {
    /// Resolution of the images; an image of more than 50 million pixels gets a lower one.
    double dotsPerInch = 300.0;
    /// Colours of the images.
    ORVColourMode colourMode = ORVColourMode::kColour;
    /// Maximum pixels of an image; larger ones cause the page to be refused.
    std::uint64_t pixelLimit = 4'000'000'000;
    /// Maximum pixels of all images of a document.
    std::uint64_t outputPixelLimit = 1'000'000'000'000;
    /// Limit of painting for all images, in pixels.
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;
    /// Rendering threads; 0 for one per processor.
    unsigned int threads = 0;
};

/// Renders what a generator does not support: layers, and shapes and texts with transparent paint, are drawn
/// together with what lies below them as opaque images of that part of the page. All other calls are passed
/// on unchanged, in order. Consecutive calls whose areas are adjacent share one image, so that a thousand
/// transparent dots do not become a thousand images. After a certain number of images on a page, the rest of
/// the page becomes one or a few. Very large areas become several images below each other.
///
/// Images are opaque because a format without layers has no transparency at all. They include the backdrop,
/// so blend modes are correct. Groups are passed on, those in layers empty; content of links stays inside
/// them.
class ORVFlattener final : public ORVPrintGenerator {
public:
    /// What the flattener provides. ORVFilterImages must have rendered filters before.
    static constexpr unsigned int kFlattened = kAllPowers & ~static_cast<unsigned int>(kFilters);
    /// True if the generator lacks any of these. The flattener then records every page.
    static bool IsNeededBefore(const ORVPrintGenerator& target) {
        return (target.GetPowers() & kFlattened) != kFlattened;
    }

    /// @param target  must outlive this object
    ORVFlattener(ORVPrintGenerator& target, const ORVFlattenOptions& options);

    /// The error that occurred here, if any. Errors of the target are not included.
    const ORVFailure& GetFailure() const { return failure_; }
    const std::string& GetError() const { return failure_.text; }
    /// Transparent parts so far that were drawn at a lower resolution.
    const ORVLoweredImages& GetLowered() const { return lowered_; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override { return target_.BeginDocument(info); }
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override { return kFlattened; }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override;
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    /// Content of symbols may have to be flattened, and the result depends on its position.
    int BeginSymbol(const ORVPrintSymbol& /*symbol*/) override { return kNoSymbols; }
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    /// An open part of the page.
    struct Part {
        ORVMathBox2D shown;    // visible area; empty in masks
        bool isTaken = false;  // by an image; the target does not know of it
        bool isPlain = false;  // a layer that only clips to its box
    };

    bool IsTaking() const { return isJoined_ || (!parts_.empty() && parts_.back().isTaken); }
    bool Takes(const ORVPrintColour& colour, const ORVPrintGradient* gradient) const;
    const ORVMathBox2D& Shown() const { return parts_.empty() ? page_ : parts_.back().shown; }

    template <class Action>
    int Guard(Action action);
    template <class Call>
    int DrawCall(const Call& call, bool isTaken, int (ORVPrintGenerator::*draw)(const Call&));
    template <class End>
    int Close(End end);
    int Open(const ORVMathBox2D& box, bool isTaken, bool isPlain = false);
    void Await(ORVMathBox2D box);
    int Flush();
    int DrawAwaited();
    int DrawPart(const ORVMathBox2D& part);
    /// Draws one image. The place and size are in pixels of `scale` per page unit.
    int DrawRows(double left, double top, double width, double height, double scale);

    ORVPrintGenerator& target_;
    const ORVFlattenOptions options_;
    const unsigned int powers_;
    ORVFailure failure_;
    ORVLoweredImages lowered_;

    std::optional<ORVPageRecording> soFar_;  // the whole page so far, source of the images
    std::vector<Part> parts_;
    std::vector<bool> groups_;  // open groups; true for links
    ORVMathBox2D page_;
    unsigned int pageNumber_ = 0;
    std::vector<ORVMathBox2D> awaited_;  // areas that were taken but not drawn yet
    unsigned int images_ = 0;            // number of images of the page; below, their pixels
    double imagePixels_ = 0.0;
    bool isJoined_ = false;  // the rest of the page is one image

    FlatPixels pixels_;
    ORVRasterGenerator raster_;  // its pages are the images, so its limits apply to all of them
    bool isDrawing_ = false;     // whether BeginDocument was called
};
