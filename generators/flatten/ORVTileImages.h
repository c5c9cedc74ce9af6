// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <vector>

#include "generators/common/ORVPageRecording.h"
#include "generators/common/exception_text.h"
#include "generators/common/generator_status.h"
#include "generators/flatten/ORVFilterImages.h"
#include "generators/flatten/clear_pixels.h"
#include "generators/raster/ORVRasterGenerator.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVFailure.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Renders the tiles of patterns as images. This stage draws one tile on a whole number of pixels and fills
/// the area with the image.
///
/// In formats with pixels, tiles whose size is not a whole number of pixels would show light seams if they
/// were drawn one by one, because each covers its border pixels only in part. In other formats, the file
/// would hold each of them, so only tiles that are repeated very often, or announced as heavy, become
/// images.
///
/// Plain tiles are passed on, as are all other calls; tiles with too many pixels are drawn one by one.
class ORVTileImages final : public ORVPrintGenerator {
public:
    /// Returns the scale from the page to the page of the device. Called when a page has begun.
    using PageScale = std::function<double()>;

    /// @param target     must outlive this object; must support all powers
    /// @param options    for the images, and for filters in tiles
    /// @param scale      default: the page is that of the device
    /// @param mostTiles  how many tiles of an area are drawn one by one; of a page, twice as many of a kind
    ORVTileImages(ORVPrintGenerator& target, const ORVFilterOptions& options, PageScale scale = {},
                  double mostTiles = 0.0);
    /// For formats without pixels.
    static constexpr double kMostTiles = 10'000.0;
    ~ORVTileImages() override;

    /// The error that occurred here, if any. Errors of the target are not included.
    const ORVFailure& GetFailure() const { return failure_; }

    int BeginDocument(const ORVPrintDocumentInfo& info) override;
    int BeginPage(const ORVPrintPageInfo& info) override;
    int BeginGroup(const ORVPrintGroup& group) override { return Pass(&Target::BeginGroup, group); }
    int EndGroup() override { return Pass(&Target::EndGroup); }
    int BeginClip(const ORVMathBox2D& box) override { return Pass(&Target::BeginClip, box); }
    int EndClip() override { return Pass(&Target::EndClip); }
    unsigned int GetPowers() const override { return target_.GetPowers(); }
    int BeginClipPath(const ORVPrintClipPath& clip) override { return Pass(&Target::BeginClipPath, clip); }
    int EndClipPath() override { return Pass(&Target::EndClipPath); }
    int BeginLayer(const ORVPrintLayer& layer) override { return Pass(&Target::BeginLayer, layer); }
    int EndLayer() override { return Pass(&Target::EndLayer); }
    int BeginMask(const ORVPrintMask& mask) override { return Pass(&Target::BeginMask, mask); }
    int EndMask() override { return Pass(&Target::EndMask); }
    int BeginFilter(const ORVPrintFilter& filter) override { return Pass(&Target::BeginFilter, filter); }
    int EndFilter() override { return Pass(&Target::EndFilter); }
    int BeginFilterInput() override { return Pass(&Target::BeginFilterInput); }
    int EndFilterInput() override { return Pass(&Target::EndFilterInput); }
    int BeginSymbol(const ORVPrintSymbol& symbol) override { return Pass(&Target::BeginSymbol, symbol); }
    int EndSymbol() override { return Pass(&Target::EndSymbol); }
    int BeginTiles(const ORVPrintTiles& tiles) override;
    int EndTiles() override;
    bool KeepsIdentifiers() const override { return target_.KeepsIdentifiers(); }
    int DrawShape(const ORVPrintShape& shape) override { return Pass(&Target::DrawShape, shape); }
    int DrawText(const ORVPrintText& text) override { return Pass(&Target::DrawText, text); }
    int DrawImage(const ORVPrintImage& image) override { return Pass(&Target::DrawImage, image); }
    int EndPage() override { return target_.EndPage(); }
    int EndDocument() override;

private:
    using Target = ORVPrintGenerator;

    /// Size of an image in pixels.
    struct Size {
        int width = 0, height = 0;
        double finer = 1.0;  // than pixels of the page
        friend bool operator==(const Size&, const Size&) = default;
    };
    /// Tiles that have begun; their content is being recorded.
    struct Open {
        ORVPrintTiles tiles;
        Size size;
        ORVPageRecording content;
    };
    /// The image of a tile that may occur again.
    struct Known {
        std::uint64_t key = 0;
        Size size;
        ORVRef<ORVPixelImage> image;
    };

    template <class Action>
    int Guard(Action action) {
        try {
            return action();
        } catch (const std::exception&) {
            ORVNameException(failure_);
            return kDrawingFailed;
        }
    }
    /// Passes a call to the recording of the open tile, or to the target.
    template <class... What>
    int Pass(int (ORVPrintGenerator::*call)(const What&...), const What&... what) {
        if (open_.empty()) return (target_.*call)(what...);
        return Guard([&] { return (open_.back()->content.*call)(what...); });
    }
    /// Pixels per page unit, or per unit of the tile that is being recorded.
    double Scale() const;
    Size SizeFor(const ORVPrintTiles& tiles) const;
    bool AreFew(const ORVPrintTiles& tiles);
    int Render(Open& open, ORVRef<ORVPixelImage>& image);
    int Fill(const ORVPrintTiles& tiles, const ORVPixelImage& image);

    ORVPrintGenerator& target_;
    const ORVFilterOptions options_;
    const PageScale pageScale_;
    const double mostTiles_;
    double dotsPerInch_;  // of the current page
    ORVFailure failure_;
    unsigned int pageNumber_ = 0;
    double imagePixels_ = 0.0, mostImagePixels_ = 0.0;  // of the current page so far, and the limit
    std::vector<std::unique_ptr<Open>> open_;           // tiles may be nested
    std::array<Known, 16> known_;
    std::size_t nextKnown_ = 0;
    /// How many tiles of a kind have been drawn one by one on the current page.
    struct Counted {
        std::uint64_t key = 0;
        double tiles = 0.0;
    };
    std::array<Counted, 16> counted_;
    std::size_t nextCounted_ = 0;

    // Renderer of the content, created on first use.
    ClearPixelSink* sink_ = nullptr;
    std::unique_ptr<ORVRasterGenerator> raster_;
    std::unique_ptr<ORVFilterImages> filters_;
};
