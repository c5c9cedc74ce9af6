// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "generators/filters/filter_neighbours.h"
#include "generators/filters/pixel_steps.h"

namespace {

template <bool kGreatest>
std::uint16_t Extreme(std::uint16_t a, std::uint16_t b) {
    return kGreatest ? std::max(a, b) : std::min(a, b);
}

/// Shorts that are processed together.
template <bool kGreatest, std::size_t kShorts>
void TakeExtremes(const std::uint16_t* a, const std::uint16_t* b, std::uint16_t* out) {
    for (std::size_t i = 0; i < kShorts; ++i) out[i] = Extreme<kGreatest>(a[i], b[i]);
}

/// Minimum or maximum of sliding windows, in three operations per item regardless of the window's width:
/// items are divided into blocks of that width, and each window consists of the end of one block and the
/// start of the next.
template <std::size_t kShorts>
class Windows {
public:
    Windows(bool isGreatest, int count, int radius)
        : isGreatest_(isGreatest),
          count_(static_cast<std::size_t>(count)),
          width_(2 * static_cast<std::size_t>(radius) + 1),
          items_((count_ + width_ - 1) * kShorts),
          toItem_(items_.size()),
          fromItem_(items_.size()) {}

    /// The item at this offset from the first requested one. Items never written are 0.
    std::uint16_t* Item(std::ptrdiff_t place) {
        return items_.data() +
               (place + static_cast<std::ptrdiff_t>(width_ / 2)) * static_cast<std::ptrdiff_t>(kShorts);
    }
    /// Computes the window around each item and stores it at `out(i)`.
    template <class Out>
    void Find(Out out) {
        isGreatest_ ? FindEach<true>(out) : FindEach<false>(out);
    }

private:
    template <bool kGreatest, class Out>
    void FindEach(Out out) {
        const std::size_t size = count_ + width_ - 1;
        const auto at = [](std::vector<std::uint16_t>& items, std::size_t i) {
            return items.data() + i * kShorts;
        };
        for (std::size_t i = 0; i < size; ++i) {
            if (i % width_ == 0)
                std::memcpy(at(toItem_, i), at(items_, i), kShorts * sizeof(std::uint16_t));
            else
                TakeExtremes<kGreatest, kShorts>(at(toItem_, i - 1), at(items_, i), at(toItem_, i));
        }
        for (std::size_t i = size; i-- > 0;) {
            if (i + 1 == size || i % width_ == width_ - 1)
                std::memcpy(at(fromItem_, i), at(items_, i), kShorts * sizeof(std::uint16_t));
            else
                TakeExtremes<kGreatest, kShorts>(at(fromItem_, i + 1), at(items_, i), at(fromItem_, i));
        }
        for (std::size_t i = 0; i < count_; ++i)
            TakeExtremes<kGreatest, kShorts>(at(fromItem_, i), at(toItem_, i + width_ - 1), out(i));
    }

    bool isGreatest_;
    std::size_t count_, width_;
    std::vector<std::uint16_t> items_, toItem_, fromItem_;
};

/// @param box  of the result, with the rows of `input`
FilterPixels MorphRows(const FilterPixels& input, bool isGreatest, int radius, const FilterBox& box) {
    FilterPixels out(box, input.GetColours());
    const FilterBox made = out.GetBox(), seen = made.GrownBy(radius, 0).CutTo(input.GetBox());
    if (seen.IsEmpty()) return out;
    Windows<kFilterChannels> windows(isGreatest, made.width, radius);
    for (int y = seen.top; y < seen.Bottom(); ++y) {
        std::memcpy(windows.Item(seen.left - made.left), input.At(seen.left, y), PixelSize(seen.width));
        windows.Find([&](std::size_t i) { return out.Row(y) + i * kFilterChannels; });
    }
    return out;
}

/// @param box  of the result, with the columns of `input`
FilterPixels MorphColumns(const FilterPixels& input, bool isGreatest, int radius, const FilterBox& box) {
    // Columns that share a cache line are processed together.
    constexpr int kTogether = 8;
    constexpr std::size_t kShorts = std::size_t{kTogether} * kFilterChannels;
    FilterPixels out(box, input.GetColours());
    const FilterBox made = out.GetBox(), seen = made.GrownBy(0, radius).CutTo(input.GetBox());
    if (seen.IsEmpty()) return out;
    Windows<kShorts> windows(isGreatest, made.height, radius);
    std::uint16_t last[kShorts];
    for (int x = seen.left; x < seen.Right(); x += kTogether) {
        const int count = std::min(kTogether, seen.Right() - x);
        for (int y = seen.top; y < seen.Bottom(); ++y)
            std::memcpy(windows.Item(y - made.top), input.At(x, y), PixelSize(count));
        const auto place = [&](std::size_t i) { return out.At(x, made.top + static_cast<int>(i)); };
        if (count == kTogether) {
            windows.Find(place);
            continue;
        }
        std::size_t found = 0;
        const auto keep = [&] {
            if (found > 0) std::memcpy(place(found - 1), last, PixelSize(count));
        };
        windows.Find([&](std::size_t i) {
            keep();
            found = i + 1;
            return last;
        });
        keep();
    }
    return out;
}

/// Reduces a radius that exceeds what can have an effect.
int UsableRadius(int radius, int inputBegin, int inputSize, int begin, int size) {
    const std::int64_t farthest = std::max(std::int64_t{inputBegin} + inputSize, std::int64_t{begin} + size) -
                                  std::min(inputBegin, begin);
    return static_cast<int>(std::clamp<std::int64_t>(radius, 0, farthest));
}

}  // namespace

FilterPixels MorphFilterPixels(const FilterPixels& input, const FilterMorphology& morphology,
                               const FilterBox& box) {
    const FilterBox from = input.GetBox();
    if (from.IsEmpty() || box.IsEmpty()) return FilterPixels(box, input.GetColours());
    const int radiusX = UsableRadius(morphology.radiusX, from.left, from.width, box.left, box.width);
    const int radiusY = UsableRadius(morphology.radiusY, from.top, from.height, box.top, box.height);
    // Rows that contribute to the box.
    const FilterBox rows =
        FilterBox{box.left, from.top, box.width, from.height}.CutTo(box.GrownBy(0, radiusY));
    const FilterPixels along = MorphRows(input, morphology.isDilation, radiusX, rows);
    FilterPixels out = MorphColumns(along, morphology.isDilation, radiusY, box);
    out.SetAlphaOnly(input.IsAlphaOnly());
    return out;
}

double FilterMorphologyWork(const FilterBox& input, const FilterMorphology& morphology,
                            const FilterBox& box) {
    const int reach = std::clamp(morphology.radiusY, 0, 1 << 28);
    const FilterBox rows =
        FilterBox{box.left, input.top, box.width, input.height}.CutTo(box.GrownBy(0, reach));
    return 3.0 * (rows.Area() + box.Area());
}
