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
#include "generators/raster/ORVRasterGenerator.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"

/// How parts of pages become images.
struct ORVFlattenOptions {
    /// Of the images; an image of more than 50 million pixels gets a lower resolution.
    double dotsPerInch = 300.0;
    ORVColourMode colourMode = ORVColourMode::kColour;   ///< of their pixels
    std::uint64_t pixelLimit = 4'000'000'000;            ///< of an image; past it, the page is refused
    std::uint64_t outputPixelLimit = 1'000'000'000'000;  ///< of all images of a document
    std::uint64_t paintLimit = std::uint64_t{1} << 56U;  ///< pixels that images may take painting for
    unsigned int threads = 0;  ///< that draw an image; 0 for as many as the machine has processors
};

/// Stands before a generator that lacks powers and does for it what it lacks: layers, and what lies below
/// them, become opaque images of just that part of the page, as do shapes and texts with transparent paints.
/// All else goes through as it came, before and after. What comes one after the other and lies side by side
/// becomes one image, so that a thousand transparent dots are not a thousand images; and when a page has had
/// as many images as are sensible, all that follows on it becomes one or a few.
///
/// Images are opaque because a format without layers has no other transparency either. Since they show what
/// lies below, blend modes are what they should be. Groups go through, also those in layers, where they then
/// hold nothing; what lies in links stays in them.
class ORVFlattener final : public ORVPrintGenerator {
public:
    /// What it can do for a generator. Filters have become images before; see ORVFilterImages.
    static constexpr unsigned int kFlattened = kAllPowers & ~static_cast<unsigned int>(kFilters);
    /// Whether a generator lacks anything. The flattener costs it a record of each page.
    static bool IsNeededBefore(const ORVPrintGenerator& target) {
        return (target.GetPowers() & kFlattened) != kFlattened;
    }

    /// @param target  must outlive this object
    ORVFlattener(ORVPrintGenerator& target, const ORVFlattenOptions& options);

    /// What went wrong here; empty when nothing did, or when it was the target.
    const ORVFailure& GetFailure() const { return failure_; }
    const std::string& GetError() const { return failure_.text; }

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
    /// Content of symbols may have to be flattened, and then depends on its place.
    int BeginSymbol(const ORVPrintSymbol& /*symbol*/) override { return kNoSymbols; }
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;
    int EndPage() override;
    int EndDocument() override;

private:
    /// Something that was begun: what shows in it, and who knows of it.
    struct Part {
        ORVMathBox2D shown;    // empty in masks
        bool isTaken = false;  // by an image: the target has not seen it
        bool isPlain = false;  // a layer that is but a box
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

    ORVPrintGenerator& target_;
    const ORVFlattenOptions options_;
    const unsigned int powers_;
    ORVFailure failure_;

    std::optional<ORVPageRecording> soFar_;  // all of the page, for the images
    std::vector<Part> parts_;
    std::vector<bool> groups_;  // that are open, whether they are links
    ORVMathBox2D page_;
    unsigned int pageNumber_ = 0;
    std::vector<ORVMathBox2D> awaited_;  // what of the page has been taken and not been drawn yet
    unsigned int images_ = 0;            // of the page, and their pixels
    double imagePixels_ = 0.0;
    bool isJoined_ = false;  // the rest of the page is one image

    FlatPixels pixels_;
    ORVRasterGenerator raster_;  // whose pages are the images, so that its limits hold for all of them
    bool isDrawing_ = false;     // whether it has begun its document
};
