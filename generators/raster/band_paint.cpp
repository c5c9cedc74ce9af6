// SPDX-License-Identifier: Apache-2.0

// Converts the coverage of a band to colour.

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

#include "generators/common/lanes.h"
#include "generators/raster/band_renderer.h"

namespace {

// Work per pixel, in pixels filled with one opaque colour: for blending; for pixels that are clipped or come
// from an image; for each sample read from an image, or from a repeated one; and for each pixel that samples
// are made of.
constexpr std::uint64_t kBlendedPixelWork = 4, kMixedPixelWork = 10, kReadWork = 20, kRepeatedReadWork = 80,
                        kImagePixelWork = 100;

/// Rounded to nearest; exact for every product of two bytes.
unsigned int DivideBy255(unsigned int value) { return (value + 128 + ((value + 128) >> 8U)) >> 8U; }

void Blend(std::uint8_t& pixel, unsigned int value, unsigned int alpha) {
    pixel = static_cast<std::uint8_t>(DivideBy255(pixel * (255 - alpha) + value * alpha));
}

}  // namespace

/// Paints one colour on red, green and blue.
class BandRenderer::SolidColourPaint {
public:
    /// Paints one row.
    struct Brush {
        std::uint8_t* row;
        PixelColour colour;
        unsigned int opacity;

        void Block(int x, const Lanes& alphas) const {
            ShortLanes share = InBothHalves(alphas);
            if (opacity != 255) share = DivideBy255(share * static_cast<std::uint16_t>(opacity));
            Blend(row + static_cast<std::size_t>(x) * kColourBytes, share);
        }
        void Span(int begin, int end, unsigned int alpha) const {
            std::uint8_t* to = row + static_cast<std::size_t>(begin) * kColourBytes;
            const std::uint8_t* const last = row + static_cast<std::size_t>(end) * kColourBytes;
            alpha = DivideBy255(alpha * opacity);
            if (alpha == 255) {
                const ShortLanes opaque = colour.Opaque();
                for (; to < last; to += sizeof opaque) StoreLanes(to, opaque);
            } else {
                const ShortLanes share = ShortLanes{} + static_cast<std::uint16_t>(alpha);
                for (; to < last; to += sizeof share) Blend(to, share);
            }
        }

    private:
        void Blend(std::uint8_t* to, const ShortLanes& share) const {
            StoreLanes(to, BlendPixels(LoadLanes<ShortLanes>(to), colour, share));
        }
    };

    SolidColourPaint(BandRenderer& renderer, const ORVPrintColour& colour)
        : renderer_(renderer), colour_(colour.red, colour.green, colour.blue), opacity_(colour.opacity) {}
    Brush BeginRow(int row) { return {renderer_.BeginRow(row), colour_, opacity_}; }
    void EndRow() {}

private:
    BandRenderer& renderer_;
    const PixelColour colour_;
    const unsigned int opacity_;
};

/// Paints one grey.
class BandRenderer::SolidGreyPaint {
public:
    /// Paints one row.
    struct Brush {
        std::uint8_t* row;
        unsigned int grey, opacity;

        void Block(int x, const Lanes& alphas) const {
            for (int i = 0; i < 4; ++i) Pixel(x + i, alphas[i]);
        }
        void Span(int begin, int end, unsigned int alpha) const {
            if (alpha == 255 && opacity == 255)
                std::memset(row + begin, static_cast<int>(grey), static_cast<std::size_t>(end - begin));
            else
                for (int x = begin; x < end; ++x) Pixel(x, alpha);
        }

    private:
        void Pixel(int x, unsigned int alpha) const { Blend(row[x], grey, DivideBy255(alpha * opacity)); }
    };

    SolidGreyPaint(BandRenderer& renderer, const ORVPrintColour& colour)
        : renderer_(renderer),
          grey_(ORVGreyOf(colour.red, colour.green, colour.blue)),
          opacity_(colour.opacity) {}
    Brush BeginRow(int row) { return {renderer_.BeginRow(row), grey_, opacity_}; }
    void EndRow() {}

private:
    BandRenderer& renderer_;
    const std::uint8_t grey_;
    const unsigned int opacity_;
};

/// Collects the coverage of a row before painting, for images and clipped operations.
class BandRenderer::AlphaPaint {
public:
    AlphaPaint(BandRenderer& renderer, const RasterOperation& operation)
        : renderer_(renderer), operation_(operation) {
        renderer.alphas_.resize(renderer.maskStride_, 0);
        alphas_ = renderer.alphas_.data();
    }
    AlphaPaint& BeginRow(int row) {
        row_ = row;
        begin_ = renderer_.width_;
        end_ = 0;
        return *this;
    }
    void Block(int x, const Lanes& alphas) {
        for (int i = 0; i < 4; ++i) alphas_[x + i] = static_cast<std::uint8_t>(alphas[i]);
        begin_ = std::min(begin_, x);
        end_ = std::max(end_, x + 4);
    }
    void Span(int begin, int end, unsigned int alpha) {
        std::memset(alphas_ + begin, static_cast<int>(alpha), static_cast<std::size_t>(end - begin));
        begin_ = std::min(begin_, begin);
        end_ = std::max(end_, end);
    }
    void EndRow() {
        const int begin = std::max(begin_, renderer_.left_), end = std::min(end_, renderer_.right_);
        if (begin < end && (!operation_.clipped || renderer_.CutOff(operation_, row_, begin, end, alphas_)))
            renderer_.BlendRow(operation_, row_, begin, end, alphas_);
        if (begin_ < end_) std::memset(alphas_ + begin_, 0, static_cast<std::size_t>(end_ - begin_));
    }

private:
    BandRenderer& renderer_;
    const RasterOperation& operation_;
    std::uint8_t* alphas_ = nullptr;
    int row_ = 0, begin_ = 0, end_ = 0;
};

bool BandRenderer::CutOff(const RasterOperation& operation, int row, int begin, int end,
                          std::uint8_t* alphas) const {
    const RasterClip& clip = list_.GetClips()[operation.clip];
    const double rowShare = std::min(clip.bottom, row + 1.0) - std::max(clip.top, 1.0 * row);
    if (!(rowShare > 0.0)) return false;
    const auto scale = [&](int x, double share) {
        const double kept = std::clamp(share * std::min(rowShare, 1.0), 0.0, 1.0);
        const double wanted = operation.smooths ? kept : (kept >= 0.5 ? 1.0 : 0.0);
        alphas[x] = static_cast<std::uint8_t>(alphas[x] * wanted + 0.5);
    };
    const auto share = [&](int x) { return std::min(clip.right, x + 1.0) - std::max(clip.left, 1.0 * x); };
    if (rowShare < 1.0) {
        for (int x = begin; x < end; ++x) scale(x, share(x));
    } else {
        // Only border pixels are partial: the operation's columns end where the clip does.
        scale(begin, share(begin));
        if (end - 1 > begin) scale(end - 1, share(end - 1));
    }
    if (clip.mask != 0) {
        const std::vector<std::uint8_t>& mask =
            planes_[std::min<std::size_t>(list_.GetClipMasks()[clip.mask].depth, planes_.size() - 1)].alphas;
        ORVMultiplyAlphas(alphas + begin, mask.data() + MaskOffset(row) + begin, end - begin);
    }
    return true;
}

std::uint8_t* BandRenderer::BeginPageRow(int row) {
    const auto index = static_cast<std::size_t>(row - firstRow_);
    std::uint8_t* pixels = rows_.get() + index * stride_;
    if (isDrawn_[index] == 0) {
        if (isWhite_[index] == 0) std::memset(pixels, paper_, stride_);
        isDrawn_[index] = 1;
        isWhite_[index] = 0;
    }
    return pixels;
}

void BandRenderer::Paint(const RasterOperation& operation) {
    if (operation.clipped)
        MakeMask(list_.GetClips()[operation.clip].mask,
                 {left_, coverage_.GetFirstRow(), right_, coverage_.GetEndRow()});
    if (operation.image && !images_.Find(*operation.image, source_)) source_ = {};
    if (operation.gradient) coverage_.AddWork(gradient_.Begin(*operation.gradient, left_, right_));
    const std::uint64_t before = coverage_.GetWork();
    if (operation.smooths) {
        if (operation.evenOdd)
            PaintWith<CoverageRule::kEvenOdd>(operation);
        else
            PaintWith<CoverageRule::kNonZero>(operation);
    } else {
        if (operation.evenOdd)
            PaintWith<CoverageRule::kHardEvenOdd>(operation);
        else
            PaintWith<CoverageRule::kHardNonZero>(operation);
    }
    coverage_.AddWork((coverage_.GetWork() - before) * (WorkOfPixel(operation) - 1));
    coverage_.AddWork(source_.made * kImagePixelWork);
    source_ = {};
}

std::uint64_t BandRenderer::WorkOfPixel(const RasterOperation& operation) const {
    if (source_.samples)
        return kMixedPixelWork + static_cast<std::uint64_t>(source_.GetReads()) *
                                     (source_.repeats ? kRepeatedReadWork : kReadWork);
    if (operation.gradient) return kMixedPixelWork + gradient_.GetPixelWork();
    if (operation.clipped) return kMixedPixelWork;
    return operation.colour.opacity == 255 ? 1 : kBlendedPixelWork;
}

template <CoverageRule kRule>
void BandRenderer::PaintWith(const RasterOperation& operation) {
    ORVPrintColour colour = operation.colour;
    const bool isPlain = !operation.gradient && (!operation.image || source_.GetColour(colour));
    if (!isPlain || operation.clipped) {
        AlphaPaint paint(*this, operation);
        coverage_.Sweep<kRule>(paint);
    } else if (pixelBytes_ == kColourBytes) {
        SolidColourPaint paint(*this, colour);
        coverage_.Sweep<kRule>(paint);
    } else {
        SolidGreyPaint paint(*this, colour);
        coverage_.Sweep<kRule>(paint);
    }
}

void BandRenderer::BlendRow(const RasterOperation& operation, int row, int begin, int end,
                            std::uint8_t* alphas) {
    std::uint8_t* pixels = BeginRow(row);
    const unsigned int opacity = operation.colour.opacity;
    // Pixels past the end may have been written, but are never visible.
    std::memset(alphas + end, 0, 4);
    if (opacity != 255)
        for (int x = begin; x < end; ++x)
            alphas[x] = static_cast<std::uint8_t>(DivideBy255(alphas[x] * opacity));
    if (operation.gradient) {
        LayPixels(gradient_.Read(row, begin, end), pixels, begin, end, alphas);
    } else if (!operation.image) {
        BlendColour(operation.colour, pixels, begin, end, alphas);
    } else if (source_.samples) {
        colours_.resize((static_cast<std::size_t>(end - begin) + 4) * 4);
        source_.Read(row, begin, end, colours_.data());
        LayPixels(colours_.data(), pixels, begin, end, alphas);
    }
}

void BandRenderer::BlendColour(const ORVPrintColour& colour, std::uint8_t* pixels, int begin, int end,
                               const std::uint8_t* alphas) const {
    if (pixelBytes_ == 1) {
        const std::uint8_t grey = ORVGreyOf(colour.red, colour.green, colour.blue);
        for (int x = begin; x < end; ++x) Blend(pixels[x], grey, alphas[x]);
        return;
    }
    const PixelColour ink(colour.red, colour.green, colour.blue);
    for (int x = begin; x < end; x += 4) {
        std::uint8_t* to = pixels + static_cast<std::size_t>(x) * kColourBytes;
        StoreLanes(to, BlendPixels(LoadLanes<ShortLanes>(to), ink, InBothHalves(LoadBytes(alphas + x))));
    }
}

void BandRenderer::LayPixels(const std::uint8_t* from, std::uint8_t* pixels, int begin, int end,
                             const std::uint8_t* alphas) const {
    if (pixelBytes_ == 1) {
        for (int x = begin; x < end; ++x, from += 4) {
            const unsigned int left = 255 - DivideBy255(from[3] * static_cast<unsigned int>(alphas[x]));
            const unsigned int grey = ORVGreyOf(from[0], from[1], from[2]);
            pixels[x] =
                static_cast<std::uint8_t>(std::min(255U, DivideBy255(pixels[x] * left + grey * alphas[x])));
        }
        return;
    }
    for (int x = begin; x < end; x += 4, from += 16) {
        std::uint8_t* to = pixels + static_cast<std::size_t>(x) * kColourBytes;
        const auto over = LoadLanes<ShortLanes>(from);
        // Most pixels inside gradients, images and layers are opaque.
        std::uint32_t four = 0;
        std::memcpy(&four, alphas + x, sizeof four);
        if (four == 0xFFFFFFFFU && AreOpaque(over))
            StoreLanes(to, over);
        else if (!AreEmpty(std::bit_cast<Lanes>(over)))
            StoreLanes(to, LayOver(LoadLanes<ShortLanes>(to), over, InBothHalves(LoadBytes(alphas + x))));
    }
}
