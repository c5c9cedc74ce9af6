// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_blur.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "generators/common/lanes.h"
#include "generators/filters/blur_kernel.h"
#include "generators/filters/pixel_steps.h"

// Rows are blurred horizontally as they are read, kept while needed, blurred vertically and written. A blur
// of any size thus reads and writes each pixel once, and can work in place.

namespace {

constexpr int kBatch = BoxColumns::kBatch;
constexpr int kSpare = 8;  // elements after a row, for vector operations

/// Blurs rows of an input along x.
class RowBlur {
public:
    /// @param columns  of the result: only left and width are used
    RowBlur(const FilterPixels& input, const BlurKernel& kernel, const FilterBox& columns)
        : input_(input),
          kernel_(kernel),
          columns_(columns),
          isAlphaOnly_(input.IsAlphaOnly()),
          window_(input.GetBox().CutTo(
              FilterBox{columns.left, input.GetBox().top, columns.width, input.GetBox().height}.GrownBy(
                  kernel.reach, 0))),
          source_(Numbers(columns.width + 2 * kernel.reach + kernel.Delay())),
          blurred_(Numbers(columns.width)),
          rows_(kernel.weights.size()) {}

    /// Elements per row: one per pixel if there is only opacity.
    int RowNumbers() const { return columns_.width * (isAlphaOnly_ ? 1 : kFilterChannels); }

    /// Computes a batch of rows from `y` on. Rows outside the input are transparent.
    void Make(int y, std::uint16_t* const* out) {
        if (isAlphaOnly_) {
            for (int k = 0; k < kBatch; k += kFilterChannels) MakeAlphas(y + k, out + k);
        } else {
            for (int k = 0; k < kBatch; ++k) MakeRow(y + k, out[k]);
        }
    }

private:
    static std::size_t Numbers(int pixels) {
        return static_cast<std::size_t>(pixels) * kFilterChannels + kSpare;
    }
    bool HasRow(int y) const {
        const FilterBox box = input_.GetBox();
        return !window_.IsEmpty() && y >= box.top && y < box.Bottom();
    }
    /// Where the input's first pixel is copied to. The rest of the row remains transparent.
    std::uint16_t* Source() {
        const int before = kernel_.Delay() + window_.left - (columns_.left - kernel_.reach);
        return source_.data() + std::ptrdiff_t{before} * kFilterChannels;
    }

    void MakeRow(int y, std::uint16_t* out) {
        if (!HasRow(y)) {
            std::memset(out, 0, static_cast<std::size_t>(RowNumbers()) * sizeof *out);
            return;
        }
        std::memcpy(Source(), input_.At(window_.left, y), PixelSize(window_.width));
        Blur(out);
    }
    /// Processes four rows at a time, as if they were the channels of one.
    void MakeAlphas(int y, std::uint16_t* const* out) {
        std::uint16_t* to = Source();
        for (int channel = 0; channel < kFilterChannels; ++channel) {
            const std::uint16_t* from =
                HasRow(y + channel) ? input_.At(window_.left, y + channel) + 3 : nullptr;
            for (std::ptrdiff_t x = 0; x < window_.width; ++x)
                to[4 * x + channel] = from ? from[4 * x] : std::uint16_t{0};
        }
        Blur(blurred_.data());
        for (int channel = 0; channel < kFilterChannels; ++channel)
            for (std::ptrdiff_t x = 0; x < columns_.width; ++x)
                out[channel][x] = blurred_[static_cast<std::size_t>(4 * x + channel)];
    }
    void Blur(std::uint16_t* out) {
        const std::uint16_t* row = source_.data() + std::ptrdiff_t{kernel_.Delay()} * kFilterChannels;
        switch (kernel_.kind) {
            case BlurKernel::Kind::kNone: std::memcpy(out, row, PixelSize(columns_.width)); return;
            case BlurKernel::Kind::kBoxes: SumBoxesAlong(kernel_, row, columns_.width, out); return;
            case BlurKernel::Kind::kWeights: break;
        }
        for (std::size_t i = 0; i < rows_.size(); ++i) rows_[i] = row + i * kFilterChannels;
        WeighRows(kernel_, rows_.data(), columns_.width * kFilterChannels, out);
    }

    const FilterPixels& input_;
    const BlurKernel& kernel_;
    FilterBox columns_;
    bool isAlphaOnly_;
    FilterBox window_;  // part of the input that contributes
    std::vector<std::uint16_t> source_, blurred_;
    std::vector<const std::uint16_t*> rows_;
};

/// Ring buffer of the last rows, by row number.
class RowRing {
public:
    RowRing(int rows, int numbers)
        : rows_(rows),
          size_(static_cast<std::size_t>(numbers) + kSpare),
          memory_(size_ * static_cast<std::size_t>(rows)) {}
    std::uint16_t* operator()(int row) {
        const int place = row % rows_;
        return memory_.data() + static_cast<std::size_t>(place < 0 ? place + rows_ : place) * size_;
    }

private:
    int rows_;
    std::size_t size_;
    std::vector<std::uint16_t> memory_;
};

/// Blurs batches of rows along y.
class ColumnBlur {
public:
    ColumnBlur(const BlurKernel& kernel, int numbers)
        : kernel_(kernel),
          numbers_(numbers),
          ring_(kernel.Delay() + kBatch, numbers),
          boxes_(kernel, kernel.kind == BlurKernel::Kind::kBoxes ? numbers : 0),
          rows_(kernel.weights.size()) {}

    /// Buffer for a row that is written before Make; rows never written are transparent.
    std::uint16_t* Row(int row) { return ring_(row); }
    /// @param row  the first of a batch
    /// @param out  receives the batch `reach` rows before
    void Make(int row, std::uint16_t* const* out) {
        if (kernel_.kind == BlurKernel::Kind::kBoxes)
            return boxes_.Step([&](int behind) { return ring_(row - behind); }, out);
        for (int k = 0; k < kBatch; ++k) Weigh(row + k, out[k]);
    }

private:
    void Weigh(int row, std::uint16_t* out) {
        if (kernel_.kind == BlurKernel::Kind::kNone) {
            std::memcpy(out, ring_(row), static_cast<std::size_t>(numbers_) * sizeof *out);
            return;
        }
        for (std::size_t i = 0; i < rows_.size(); ++i)
            rows_[i] = ring_(row - 2 * kernel_.reach + static_cast<int>(std::min(i, rows_.size() - 2)));
        WeighRows(kernel_, rows_.data(), numbers_, out);
    }

    const BlurKernel& kernel_;
    int numbers_;
    RowRing ring_;
    BoxColumns boxes_;
    std::vector<const std::uint16_t*> rows_;
};

void WriteRow(const std::uint16_t* numbers, bool isAlphaOnly, const FilterBox& box, std::uint16_t* out) {
    if (!isAlphaOnly) {
        std::memcpy(out, numbers, PixelSize(box.width));
        return;
    }
    for (std::ptrdiff_t x = 0; x < box.width; ++x) {
        const std::uint64_t pixel = std::uint64_t{numbers[x]} << 48;
        std::memcpy(out + 4 * x, &pixel, sizeof pixel);
    }
}

/// @param out  may be the input itself
void BlurInto(const FilterPixels& input, const BlurKernel& alongX, const BlurKernel& alongY,
              FilterPixels& out) {
    const FilterBox box = out.GetBox();
    RowBlur rows(input, alongX, box);
    ColumnBlur columns(alongY, rows.RowNumbers());
    RowRing made(kBatch, rows.RowNumbers());
    std::uint16_t *in[kBatch], *batch[kBatch];
    for (int k = 0; k < kBatch; ++k) batch[k] = made(k);

    // Row 0 is the first one that contributes.
    const int first = box.top - alongY.reach, count = box.height + 2 * alongY.reach;
    for (int row = 0; row < count; row += kBatch) {
        for (int k = 0; k < kBatch; ++k) in[k] = columns.Row(row + k);
        rows.Make(first + row, in);
        columns.Make(row, batch);
        for (int k = 0; k < kBatch; ++k)
            if (const int y = first + row + k - alongY.reach; y >= box.top && y < box.Bottom())
                WriteRow(batch[k], input.IsAlphaOnly(), box, out.Row(y));
    }
}

FilterPixels BlurExactly(FilterPixels input, double sigmaX, double sigmaY, const FilterBox& box) {
    const BlurKernel alongX(sigmaX), alongY(sigmaY);
    if (input.GetBox() == box) {
        BlurInto(input, alongX, alongY, input);
        return input;
    }
    FilterPixels out(box, input.GetColours());
    out.SetAlphaOnly(input.IsAlphaOnly());
    if (!out.GetBox().IsEmpty()) BlurInto(input, alongX, alongY, out);
    return out;
}

// ---- Large blurs ------------------------------------------------------------------------------------------

// Large blurs remove all fine detail, so they are computed on cells: means of pixel blocks, sized so that the
// standard deviation is 10 to 20 cells. Pixels are interpolated linearly between cells.

/// Cells of 2^shift pixels along an axis. Cell 0 begins at pixel 0.
struct Cells {
    int shift = 0;
    /// In cells; the blur added by averaging and interpolation is subtracted.
    double sigma = 0.0;

    explicit Cells(double inPixels) {
        while (inPixels > BlurKernel::kLargestBoxSigma * Size()) ++shift;
        sigma = std::sqrt(inPixels * inPixels - 0.25 * (1.0 * Size() * Size() - 1.0)) / Size();
    }
    int Size() const { return 1 << shift; }
    /// The last cell whose centre is at or before that of a pixel.
    int Before(int pixel) const { return (2 * pixel + 1 - Size()) >> (shift + 1); }
    /// Position of a pixel between the centres of that cell and the next, in units of 1/2^(shift + 1).
    int Part(int pixel) const { return (2 * pixel + 1 - Size()) & (2 * Size() - 1); }
};

struct CellGrid {
    Cells x, y;
    bool IsOfPixels() const { return x.shift == 0 && y.shift == 0; }
};

/// The cells that contain the pixels of a box.
FilterBox CellsAround(const FilterBox& box, const CellGrid& grid) {
    if (box.IsEmpty()) return {};
    const int left = box.left >> grid.x.shift, top = box.top >> grid.y.shift;
    const int right = (box.Right() - 1) >> grid.x.shift, bottom = (box.Bottom() - 1) >> grid.y.shift;
    return {left, top, right - left + 1, bottom - top + 1};
}
/// The cells needed to interpolate the pixels of a box.
FilterBox CellsBeside(const FilterBox& box, const CellGrid& grid) {
    const int left = grid.x.Before(box.left), top = grid.y.Before(box.top);
    return {left, top, grid.x.Before(box.Right() - 1) - left + 2, grid.y.Before(box.Bottom() - 1) - top + 2};
}

/// Adds a row of pixels to the sums of their cells, from the first cell on.
void AddToCells(const std::uint16_t* pixels, const FilterBox& window, int shift, std::uint32_t* sums) {
    const int firstCell = window.left >> shift;
    for (int x = window.left; x < window.Right();) {
        const int cell = x >> shift, end = std::min(window.Right(), (cell + 1) << shift);
        std::uint32_t* sum = sums + PixelShorts(cell - firstCell);
        auto lanes = LoadLanes<Lanes>(sum);
        for (; x < end; ++x, pixels += kFilterChannels) lanes += std::bit_cast<Lanes>(LoadShorts(pixels));
        StoreLanes(sum, lanes);
    }
}

FilterPixels MeansOfCells(const FilterPixels& input, const FilterBox& window, const CellGrid& grid) {
    FilterPixels cells(CellsAround(window, grid), input.GetColours());
    cells.SetAlphaOnly(input.IsAlphaOnly());
    const FilterBox box = cells.GetBox();
    const int shift = grid.x.shift + grid.y.shift;
    const std::uint32_t half = (1U << shift) >> 1;
    std::vector<std::uint32_t> sums(static_cast<std::size_t>(PixelShorts(box.width)));
    for (int cell = box.top; cell < box.Bottom(); ++cell) {
        std::fill(sums.begin(), sums.end(), half);
        const int end = std::min(window.Bottom(), (cell + 1) << grid.y.shift);
        for (int y = std::max(window.top, cell << grid.y.shift); y < end; ++y)
            AddToCells(input.At(window.left, y), window, grid.x.shift, sums.data());
        std::uint16_t* out = cells.Row(cell);
        for (std::size_t i = 0; i < sums.size(); ++i) out[i] = static_cast<std::uint16_t>(sums[i] >> shift);
    }
    return cells;
}

/// Interpolates a row between two rows of cells.
void MixRows(const std::uint16_t* above, const std::uint16_t* below, int part, int shift,
             std::vector<std::uint16_t>& out) {
    const std::uint32_t whole = 2U << shift, lower = static_cast<std::uint32_t>(part), upper = whole - lower;
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = static_cast<std::uint16_t>((above[i] * upper + below[i] * lower + whole / 2) >> (shift + 1));
}

/// Interpolates pixels between the cells of a row; the first cell is the one before the first pixel.
void DrawBetweenCells(const std::uint16_t* cells, const Cells& axis, const FilterBox& box,
                      std::uint16_t* out) {
    const int shift = axis.shift + 1;
    for (int x = box.left; x < box.Right(); cells += kFilterChannels) {
        const int part = axis.Part(x), end = std::min(box.Right(), x + (2 * axis.Size() - part + 1) / 2);
        const auto first = std::bit_cast<Lanes>(LoadShorts(cells));
        const Lanes rise = std::bit_cast<Lanes>(LoadShorts(cells + kFilterChannels)) - first;
        Lanes value = (first << shift) + rise * static_cast<std::uint32_t>(part) +
                      static_cast<std::uint32_t>(axis.Size());
        for (; x < end; ++x, out += kFilterChannels, value += rise + rise) {
            const auto whole = std::bit_cast<SignedLanes>(value >> shift);
            const auto pixel = std::bit_cast<LongLanes>(PackShorts(whole, whole))[0];
            std::memcpy(out, &pixel, sizeof pixel);
        }
    }
}

/// @param out  its box is between the cells
void FillFromCells(const FilterPixels& cells, const CellGrid& grid, FilterPixels& out) {
    const FilterBox box = out.GetBox();
    std::vector<std::uint16_t> row(static_cast<std::size_t>(PixelShorts(cells.GetBox().width)));
    for (int y = box.top; y < box.Bottom(); ++y) {
        const int above = grid.y.Before(y);
        MixRows(cells.Row(above), cells.Row(above + 1), grid.y.Part(y), grid.y.shift, row);
        DrawBetweenCells(row.data(), grid.x, box, out.Row(y));
    }
}

FilterPixels BlurByCells(FilterPixels input, const CellGrid& grid, const FilterBlur& blur,
                         const FilterBox& box) {
    const FilterBox reached = box.GrownBy(FilterBlurReach(blur.sigmaX), FilterBlurReach(blur.sigmaY));
    FilterPixels cells = BlurExactly(MeansOfCells(input, input.GetBox().CutTo(reached), grid), grid.x.sigma,
                                     grid.y.sigma, CellsBeside(box, grid));
    FilterPixels out = input.GetBox() == box ? std::move(input) : FilterPixels(box, cells.GetColours());
    out.SetAlphaOnly(cells.IsAlphaOnly());
    FillFromCells(cells, grid, out);
    return out;
}

double UsableSigma(double sigma) { return sigma > 0.0 ? std::min(sigma, kLargestFilterSigma) : 0.0; }

}  // namespace

int FilterBlurReach(double sigma) {
    const Cells cells(UsableSigma(sigma));
    // With cells: the partial cells at the edges, and the neighbours needed for interpolation.
    return (BlurKernel(cells.sigma).reach + (cells.shift > 0 ? 2 : 0)) << cells.shift;
}

FilterPixels BlurFilterPixels(FilterPixels input, const FilterBlur& blur, const FilterBox& box) {
    const FilterBlur usable{UsableSigma(blur.sigmaX), UsableSigma(blur.sigmaY)};
    const CellGrid grid{Cells(usable.sigmaX), Cells(usable.sigmaY)};
    const bool isMoved = BlurKernel(grid.x.sigma).reach > 0 || BlurKernel(grid.y.sigma).reach > 0;
    const bool isPossible = !input.GetBox().IsEmpty() && !box.IsEmpty();
    if (!isMoved || !isPossible) return ClipFilterPixels(std::move(input), box);
    if (grid.IsOfPixels()) return BlurExactly(std::move(input), usable.sigmaX, usable.sigmaY, box);
    return BlurByCells(std::move(input), grid, usable, box);
}

double FilterBlurWork(const FilterBox& input, const FilterBlur& blur, const FilterBox& box) {
    const FilterBox reached = box.GrownBy(FilterBlurReach(blur.sigmaX), FilterBlurReach(blur.sigmaY));
    // Horizontal and vertical passes.
    return input.CutTo(reached).Area() + 2.0 * box.Area();
}
