// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/colour_spaces.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

using Matrix = std::array<Components, 3>;  // by rows

// To linear sRGB with white point D65.
constexpr Matrix kFromXyz{{{3.2409699419, -1.5373831776, -0.4986107603},
                           {-0.9692436363, 1.8759675015, 0.0415550574},
                           {0.0556300797, -0.2039769589, 1.0569715142}}};
constexpr Matrix kFromP3{{{1.2249401763, -0.2249401763, 0.0},
                          {-0.0420569547, 1.0420569547, 0.0},
                          {-0.0196375546, -0.0786360456, 1.0982736001}}};
constexpr Matrix kFromCones{{{4.0767416621, -3.3077115913, 0.2309699292},
                             {-1.2684380046, 2.6097574011, -0.3413193965},
                             {-0.0041960863, -0.7034186147, 1.7076147010}}};
// From Oklab to the cube roots of the cone responses.
constexpr Matrix kToCones{{{1.0, 0.3963377774, 0.2158037573},
                           {1.0, -0.1055613458, -0.0638541728},
                           {1.0, -0.0894841775, -1.2914855480}}};
constexpr Matrix kD50ToD65{{{0.9554734527, -0.0230985368, 0.0632593086},
                            {-0.0283697069, 1.0099954580, 0.0210413990},
                            {0.0123140016, -0.0205076964, 1.3303659366}}};
constexpr Components kWhiteD50{0.9642956764, 1.0, 0.8251046025};

Components Map(const Matrix& matrix, const Components& from) {
    Components to{};
    for (std::size_t i = 0; i < to.size(); ++i)
        for (std::size_t k = 0; k < from.size(); ++k) to[i] += matrix[i][k] * from[k];
    return to;
}

/// The sRGB transfer function, extended symmetrically to negative values.
Components Encoded(Components linear) {
    for (double& value : linear) {
        const double size = std::fabs(value);
        const double encoded = size <= 0.0031308 ? 12.92 * size : 1.055 * std::pow(size, 1.0 / 2.4) - 0.055;
        value = std::copysign(encoded, value);
    }
    return linear;
}

Components Decoded(Components encoded) {
    for (double& value : encoded) {
        const double size = std::fabs(value);
        const double linear = size <= 0.04045 ? size / 12.92 : std::pow((size + 0.055) / 1.055, 2.4);
        value = std::copysign(linear, value);
    }
    return encoded;
}

}  // namespace

Components HwbToRgb(const Components& hwb) {
    const double sum = hwb[1] + hwb[2];
    if (sum >= 1.0) return {hwb[1] / sum, hwb[1] / sum, hwb[1] / sum};
    const auto channel = [&hwb](double offset) {
        const double place = hwb[0] / 60.0 + offset, k = place - 6.0 * std::floor(place / 6.0);
        const double pure = 1.0 - std::clamp(std::min(k, 4.0 - k), 0.0, 1.0);
        return pure * (1.0 - hwb[1] - hwb[2]) + hwb[1];
    };
    return {channel(5.0), channel(3.0), channel(1.0)};
}

Components LabToRgb(const Components& lab) {
    constexpr double kEpsilon = 216.0 / 24389.0, kKappa = 24389.0 / 27.0;
    const double y = (lab[0] + 16.0) / 116.0;
    const Components roots{y + lab[1] / 500.0, y, y - lab[2] / 200.0};
    Components xyz{};
    for (std::size_t i = 0; i < xyz.size(); ++i) {
        const double cube = roots[i] * roots[i] * roots[i];
        xyz[i] = kWhiteD50[i] * (cube > kEpsilon ? cube : (116.0 * roots[i] - 16.0) / kKappa);
    }
    return Encoded(Map(kFromXyz, Map(kD50ToD65, xyz)));
}

Components OklabToRgb(const Components& oklab) {
    Components cones = Map(kToCones, oklab);
    for (double& cone : cones) cone = cone * cone * cone;
    return Encoded(Map(kFromCones, cones));
}

Components FromPolar(const Components& polar) {
    const double angle = polar[2] * std::numbers::pi / 180.0;
    return {polar[0], polar[1] * std::cos(angle), polar[1] * std::sin(angle)};
}

bool ToRgb(std::string_view space, Components& components) {
    if (EqualsIgnoringCase(space, "srgb")) return true;
    if (EqualsIgnoringCase(space, "srgb-linear"))
        components = Encoded(components);
    else if (EqualsIgnoringCase(space, "display-p3"))
        components = Encoded(Map(kFromP3, Decoded(components)));
    else if (EqualsIgnoringCase(space, "xyz") || EqualsIgnoringCase(space, "xyz-d65"))
        components = Encoded(Map(kFromXyz, components));
    else if (EqualsIgnoringCase(space, "xyz-d50"))
        components = Encoded(Map(kFromXyz, Map(kD50ToD65, components)));
    else
        return false;
    return true;
}

}  // namespace svg2
