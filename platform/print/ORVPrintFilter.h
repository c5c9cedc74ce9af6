// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

// Filters as generators get them: everything a filter refers to has been looked up, every default has been
// set, and lengths are in the user space of the filtered element.

/// A channel of a pixel.
enum class ORVFilterChannel : std::uint8_t { kRed, kGreen, kBlue, kAlpha };

/// Nothing: transparent all over. What a step becomes that cannot be computed.
struct ORVFilterNothing {};

/// Passes its input on, cut to its subregion.
struct ORVFilterPass {};

/// Blurs; 0 leaves an axis as it is.
struct ORVFilterBlur {
    double xDeviation = 0.0, yDeviation = 0.0;  ///< standard deviations, not negative
};

/// Moves.
struct ORVFilterOffset {
    double dx = 0.0, dy = 0.0;  ///< in user units
};

/// One colour all over.
struct ORVFilterFlood {
    ORVPrintColour colour;  ///< of sRGB
};

/// Lays its inputs over each other, the first one at the bottom.
struct ORVFilterMerge {};

/// Lays the first input over a coloured shadow that it casts itself.
struct ORVFilterShadow {
    ORVFilterBlur blur;      ///< of the shadow
    ORVFilterOffset offset;  ///< of the shadow
    ORVPrintColour colour;   ///< of the shadow, in sRGB
};

/// Mixes the first input, on top, with the second one below it.
struct ORVFilterBlend {
    ORVPrintBlendMode mode = ORVPrintBlendMode::kNormal;  ///< any
};

/// Puts two inputs together by their opacities, as Porter and Duff name it, or by a formula.
struct ORVFilterComposite {
    /// Of Porter and Duff, their sum, and the formula.
    enum class Operator : std::uint8_t { kOver, kIn, kOut, kAtop, kXor, kLighter, kArithmetic };
    Operator kind = Operator::kOver;                ///< kArithmetic uses the factors
    double k1 = 0.0, k2 = 0.0, k3 = 0.0, k4 = 0.0;  ///< k1 a b + k2 a + k3 b + k4
};

/// Multiplies red, green, blue, opacity and 1 by a matrix; colours are not multiplied by their opacity.
struct ORVFilterColours {
    /// By rows: red, green, blue, opacity.
    std::array<double, 20> matrix{1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0};
};

/// Sends each channel through a function.
struct ORVFilterTransfer {
    /// Takes values from 0 to 1.
    struct Function {
        /// Of functions.
        enum class Kind : std::uint8_t { kIdentity, kTable, kDiscrete, kLinear, kGamma };
        Kind kind = Kind::kIdentity;                           ///< says what of the following counts
        std::vector<double> values;                            ///< of tables, at least one
        double slope = 1.0, intercept = 0.0;                   ///< of kLinear
        double amplitude = 1.0, exponent = 1.0, offset = 0.0;  ///< of kGamma
    };
    std::array<Function, 4> functions;  ///< by ORVFilterChannel
};

/// Sums of the pixels around each, weighted. A pixel here is one of the device.
struct ORVFilterConvolution {
    /// What lies beyond the input: its outermost pixels, the input again, or nothing.
    enum class Edges : std::uint8_t { kDuplicate, kWrap, kNone };
    int columns = 3, rows = 3;        ///< at least 1
    std::vector<double> kernel;       ///< by rows, as it is written: it is turned by 180 degrees
    double divisor = 1.0;             ///< not 0
    double bias = 0.0;                ///< added in the end
    int targetX = 1, targetY = 1;     ///< of the kernel, which of its weights is that of the pixel itself
    Edges edges = Edges::kDuplicate;  ///< what lies beyond the input
    bool keepsAlpha = false;          ///< only colours are summed
};

/// Makes shapes thinner or thicker.
struct ORVFilterMorphology {
    bool dilates = false;                 ///< thicker, else thinner
    double xRadius = 0.0, yRadius = 0.0;  ///< in user units, not negative, not both 0
};

/// Repeats what its input has in the input's subregion.
struct ORVFilterTile {};

/// Noise.
struct ORVFilterTurbulence {
    double xFrequency = 0.0, yFrequency = 0.0;  ///< per user unit, not negative
    int octaves = 1;                            ///< at least 1
    int seed = 0;                               ///< any
    bool isStitched = false;                    ///< tiles of it join
    bool isNoise = false;                       ///< fractal noise, else turbulence
};

/// Moves the pixels of the first input by the colours of the second one.
struct ORVFilterDisplacement {
    double scale = 0.0;                             ///< in user units
    ORVFilterChannel x = ORVFilterChannel::kAlpha;  ///< that moves across
    ORVFilterChannel y = ORVFilterChannel::kAlpha;  ///< that moves down
};

/// Lights a surface whose height is the opacity of the input.
struct ORVFilterLighting {
    /// Where the light comes from: one direction, a point, or a point that lights a cone.
    enum class Light : std::uint8_t { kDistant, kPoint, kSpot };
    bool isSpecular = false;                                     ///< what shines, else what is lit
    double surfaceScale = 1.0;                                   ///< height of opacity 1
    double constant = 1.0;                                       ///< factor of the light
    double exponent = 1.0;                                       ///< of what shines
    ORVPrintColour colour;                                       ///< of the light, in sRGB
    Light light = Light::kDistant;                               ///< says what of the following counts
    double azimuth = 0.0, elevation = 0.0;                       ///< of kDistant, degrees
    double x = 0.0, y = 0.0, z = 0.0;                            ///< of the others, user units
    double pointsAtX = 0.0, pointsAtY = 0.0, pointsAtZ = 0.0;    ///< of kSpot
    double spotExponent = 1.0;                                   ///< of kSpot
    double coneAngle = std::numeric_limits<double>::infinity();  ///< of kSpot, degrees; infinity for no cone
};

/// Content that comes between BeginFilterInput and EndFilterInput.
struct ORVFilterInput {
    unsigned int number = 0;  ///< of the input, from 0
};

/// What a step does.
using ORVFilterOperation =
    std::variant<ORVFilterNothing, ORVFilterPass, ORVFilterBlur, ORVFilterOffset, ORVFilterFlood,
                 ORVFilterMerge, ORVFilterShadow, ORVFilterBlend, ORVFilterComposite, ORVFilterColours,
                 ORVFilterTransfer, ORVFilterConvolution, ORVFilterMorphology, ORVFilterTile,
                 ORVFilterTurbulence, ORVFilterDisplacement, ORVFilterLighting, ORVFilterInput>;

/// A step of a filter.
struct ORVPrintFilterStep {
    static constexpr int kSource = -1;       ///< as an input: the filtered content
    static constexpr int kSourceAlpha = -2;  ///< as an input: its opacity, in black

    ORVFilterOperation operation;  ///< with its numbers
    std::vector<int> inputs;       ///< numbers of earlier steps, or what stands above; as many as it takes
    bool isLinear = true;          ///< computed in linearRGB, else in sRGB
    ORVMathBox2D subregion;  ///< in user units; the result is transparent outside. May be infinite, or empty
};

/// A filter on content. The result of the last step is shown instead of the content.
struct ORVPrintFilter {
    std::span<const ORVPrintFilterStep> steps;  ///< at least one
    ORVMathBox2D region;          ///< what of the content counts, in user units; may be infinite
    ORVMathAffine2D toPage;       ///< from user units to those of the page; can be inverted
    unsigned int inputCount = 0;  ///< how many inputs follow BeginFilter
};
