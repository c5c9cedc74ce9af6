// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/filters/colour_matrices.h"

#include <cmath>
#include <cstddef>
#include <numbers>

namespace svg2 {
namespace {

constexpr std::size_t kColumns = 5;
// Luminance coefficients of red, green and blue.
constexpr double kLight[3] = {0.213, 0.715, 0.072};

/// A matrix of three rows for the colours; opacity is unchanged.
ColourMatrix OfColours(const double (&rows)[3][3]) {
    ColourMatrix matrix{};
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k) matrix[i * kColumns + k] = rows[i][k];
    matrix[3 * kColumns + 3] = 1.0;
    return matrix;
}

/// Applies the same factor and offset to all colours.
ColourMatrix Linear(double factor, double added) {
    ColourMatrix matrix = OfColours({{factor, 0, 0}, {0, factor, 0}, {0, 0, factor}});
    for (std::size_t i = 0; i < 3; ++i) matrix[i * kColumns + 4] = added;
    return matrix;
}

/// Interpolates between two matrices of colours.
ColourMatrix Mixed(const double (&from)[3][3], const double (&to)[3][3], double share) {
    double rows[3][3];
    for (std::size_t i = 0; i < 3; ++i)
        for (std::size_t k = 0; k < 3; ++k) rows[i][k] = from[i][k] + (to[i][k] - from[i][k]) * share;
    return OfColours(rows);
}

constexpr double kSame[3][3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};

}  // namespace

ColourMatrix IdentityMatrix() { return OfColours(kSame); }

ColourMatrix SaturateMatrix(double amount) {
    const auto& [r, g, b] = kLight;
    return Mixed({{r, g, b}, {r, g, b}, {r, g, b}}, kSame, amount);
}

ColourMatrix HueRotateMatrix(double degrees) {
    const double radians = degrees * std::numbers::pi / 180.0;
    const double c = std::cos(radians), s = std::sin(radians);
    const auto& [r, g, b] = kLight;
    return OfColours({{r + c * (1 - r) - s * r, g - c * g - s * g, b - c * b + s * (1 - b)},
                      {r - c * r + s * 0.143, g + c * (1 - g) + s * 0.140, b - c * b - s * 0.283},
                      {r - c * r - s * (1 - r), g - c * g + s * g, b + c * (1 - b) + s * b}});
}

ColourMatrix LuminanceToAlphaMatrix() {
    ColourMatrix matrix{};
    matrix[3 * kColumns] = 0.2125;
    matrix[3 * kColumns + 1] = 0.7154;
    matrix[3 * kColumns + 2] = 0.0721;
    return matrix;
}

ColourMatrix BrightnessMatrix(double amount) { return Linear(amount, 0.0); }

ColourMatrix ContrastMatrix(double amount) { return Linear(amount, 0.5 - 0.5 * amount); }

ColourMatrix GrayscaleMatrix(double amount) {
    constexpr double kGrey[3][3] = {
        {0.2126, 0.7152, 0.0722}, {0.2126, 0.7152, 0.0722}, {0.2126, 0.7152, 0.0722}};
    return Mixed(kSame, kGrey, amount);
}

ColourMatrix InvertMatrix(double amount) { return Linear(1.0 - 2.0 * amount, amount); }

ColourMatrix OpacityMatrix(double amount) {
    ColourMatrix matrix = IdentityMatrix();
    matrix[3 * kColumns + 3] = amount;
    return matrix;
}

ColourMatrix SepiaMatrix(double amount) {
    constexpr double kSepia[3][3] = {{0.393, 0.769, 0.189}, {0.349, 0.686, 0.168}, {0.272, 0.534, 0.131}};
    return Mixed(kSame, kSepia, amount);
}

ColourMatrix AlphaMatrix() {
    ColourMatrix matrix{};
    matrix[3 * kColumns + 3] = 1.0;
    return matrix;
}

}  // namespace svg2
