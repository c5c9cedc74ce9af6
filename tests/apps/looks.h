// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <string>
#include <vector>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// The colours of an image, averaged over the cells of a grid: fine enough to detect missing or misplaced
/// content, coarse enough to tolerate different antialiasing.
class Looks {
public:
    static constexpr int kColumns = 100;

    /// @param rows  0 for square cells
    Looks(const std::string& path, int rows) : rows_(rows) {
        const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromFile(path, 0, 0));
        if (!image) return;
        const int width = image->GetWidth(), height = image->GetHeight();
        if (rows_ == 0) rows_ = std::max(1, kColumns * height / width);
        cells_.resize(static_cast<std::size_t>(kColumns) * static_cast<std::size_t>(rows_));
        std::vector<double> counts(cells_.size());
        const auto pixels = image->GetPixels();
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                const auto* pixel = &pixels[4 * static_cast<std::size_t>(y * width + x)];
                const double opacity = pixel[3] / 255.0;
                const auto cell = static_cast<std::size_t>(y * rows_ / height) * kColumns +
                                  static_cast<std::size_t>(x * kColumns / width);
                for (std::size_t i = 0; i < 3; ++i) cells_[cell][i] += 255.0 + opacity * (pixel[i] - 255.0);
                counts[cell] += 1.0;
            }
        for (std::size_t i = 0; i < cells_.size(); ++i)
            for (double& level : cells_[i]) level /= counts[i];
    }

    bool IsThere() const { return !cells_.empty(); }
    int GetRows() const { return rows_; }

    /// Mean difference, from 0 to 255.
    double DifferenceFrom(const Looks& other) const {
        double sum = 0.0;
        for (std::size_t i = 0; i < cells_.size(); ++i)
            for (std::size_t k = 0; k < 3; ++k) sum += std::fabs(cells_[i][k] - other.cells_[i][k]);
        return sum / (3.0 * static_cast<double>(cells_.size()));
    }
    /// Fraction of cells in which any colour differs by more than `levels`.
    double ShareApartFrom(const Looks& other, double levels) const {
        std::size_t apart = 0;
        for (std::size_t i = 0; i < cells_.size(); ++i) {
            bool isApart = false;
            for (std::size_t k = 0; k < 3; ++k)
                isApart = isApart || std::fabs(cells_[i][k] - other.cells_[i][k]) > levels;
            apart += isApart ? 1 : 0;
        }
        return static_cast<double>(apart) / static_cast<double>(cells_.size());
    }

private:
    int rows_;
    std::vector<std::array<double, 3>> cells_;
};
