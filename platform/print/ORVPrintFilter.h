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

// Filters as passed to generators: references are resolved, defaults are filled in, and lengths are in the
// user space of the filtered element.

/// A channel of an RGBA pixel.
enum class ORVFilterChannel : std::uint8_t { kRed, kGreen, kBlue, kAlpha };

/// Transparent everywhere. Replaces a step that cannot be computed.
struct ORVFilterNothing {};

/// Returns its input, clipped to the step's subregion.
struct ORVFilterPass {};

/// Gaussian blur. A deviation of 0 leaves that axis unblurred.
struct ORVFilterBlur {
    double xDeviation = 0.0, yDeviation = 0.0;  ///< standard deviations in user units, not negative
};

/// Translation.
struct ORVFilterOffset {
    double dx = 0.0, dy = 0.0;  ///< in user units
};

/// A uniform colour.
struct ORVFilterFlood {
    ORVPrintColour colour;  ///< in sRGB
};

/// Paints all inputs over each other, the first one at the bottom.
struct ORVFilterMerge {};

/// Paints the first input over its own shadow.
struct ORVFilterShadow {
    ORVFilterBlur blur;      ///< blur of the shadow
    ORVFilterOffset offset;  ///< offset of the shadow
    ORVPrintColour colour;   ///< colour of the shadow, in sRGB
};

/// Blends the first input (the source) with the second one (the backdrop).
struct ORVFilterBlend {
    ORVPrintBlendMode mode = ORVPrintBlendMode::kNormal;  ///< any mode
};

/// Combines two inputs with a Porter-Duff operator or an arithmetic formula.
struct ORVFilterComposite {
    /// The Porter-Duff operators, kLighter (their sum), and kArithmetic.
    enum class Operator : std::uint8_t { kOver, kIn, kOut, kAtop, kXor, kLighter, kArithmetic };
    Operator kind = Operator::kOver;                ///< `k1` to `k4` apply only to kArithmetic
    double k1 = 0.0, k2 = 0.0, k3 = 0.0, k4 = 0.0;  ///< result: k1 a b + k2 a + k3 b + k4
};

/// Multiplies (red, green, blue, opacity, 1) by a matrix. Colours are not premultiplied.
struct ORVFilterColours {
    /// 4 x 5 matrix in row-major order; the rows give red, green, blue and opacity.
    std::array<double, 20> matrix{1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0};
};

/// Applies a transfer function to each channel.
struct ORVFilterTransfer {
    /// A function of values from 0 to 1.
    struct Function {
        /// Type of the function.
        enum class Kind : std::uint8_t { kIdentity, kTable, kDiscrete, kLinear, kGamma };
        Kind kind = Kind::kIdentity;                           ///< determines which fields below apply
        std::vector<double> values;                            ///< for kTable and kDiscrete, at least one
        double slope = 1.0, intercept = 0.0;                   ///< for kLinear
        double amplitude = 1.0, exponent = 1.0, offset = 0.0;  ///< for kGamma
    };
    std::array<Function, 4> functions;  ///< indexed by ORVFilterChannel
};

/// Convolution of pixels with a kernel. Pixels are device pixels.
struct ORVFilterConvolution {
    /// What the input is extended with: its edge pixels, copies of itself, or transparency.
    enum class Edges : std::uint8_t { kDuplicate, kWrap, kNone };
    int columns = 3, rows = 3;        ///< size of the kernel, each at least 1
    std::vector<double> kernel;       ///< row-major, as in the document; rotated by 180 degrees to use
    double divisor = 1.0;             ///< the sum is divided by this; not 0
    double bias = 0.0;                ///< added to the result
    int targetX = 1, targetY = 1;     ///< position in the kernel that corresponds to the output pixel
    Edges edges = Edges::kDuplicate;  ///< how the input is extended at its edges
    bool keepsAlpha = false;          ///< only colours are convolved, opacity is kept
};

/// Erodes or dilates shapes.
struct ORVFilterMorphology {
    bool dilates = false;                 ///< dilate; otherwise erode
    double xRadius = 0.0, yRadius = 0.0;  ///< user units; not negative, not both 0
};

/// Tiles the output with the content of the input's subregion.
struct ORVFilterTile {};

/// Perlin noise.
struct ORVFilterTurbulence {
    double xFrequency = 0.0, yFrequency = 0.0;  ///< per user unit; not negative
    int octaves = 1;                            ///< at least 1
    int seed = 0;                               ///< any value
    bool isStitched = false;                    ///< make the result tile without seams
    bool isNoise = false;                       ///< fractal noise; otherwise turbulence
};

/// Displaces the pixels of the first input according to the colours of the second one.
struct ORVFilterDisplacement {
    double scale = 0.0;                             ///< user units
    ORVFilterChannel x = ORVFilterChannel::kAlpha;  ///< channel of the second input that displaces along x
    ORVFilterChannel y = ORVFilterChannel::kAlpha;  ///< channel of the second input that displaces along y
};

/// Lights a surface whose height is given by the input's opacity.
struct ORVFilterLighting {
    /// Type of light source: parallel light, a point, or a point with a cone.
    enum class Light : std::uint8_t { kDistant, kPoint, kSpot };
    bool isSpecular = false;                                     ///< specular reflection; otherwise diffuse
    double surfaceScale = 1.0;                                   ///< height of the surface at full opacity
    double constant = 1.0;                                       ///< diffuse or specular constant
    double exponent = 1.0;                                       ///< specular exponent
    ORVPrintColour colour;                                       ///< colour of the light, in sRGB
    Light light = Light::kDistant;                               ///< determines which fields below apply
    double azimuth = 0.0, elevation = 0.0;                       ///< for kDistant, degrees
    double x = 0.0, y = 0.0, z = 0.0;                            ///< position for kPoint and kSpot, user
                                                                 ///< units
    double pointsAtX = 0.0, pointsAtY = 0.0, pointsAtZ = 0.0;    ///< for kSpot, user units
    double spotExponent = 1.0;                                   ///< for kSpot
    double coneAngle = std::numeric_limits<double>::infinity();  ///< for kSpot, degrees; infinity for no cone
};

/// Content drawn between BeginFilterInput and EndFilterInput.
struct ORVFilterInput {
    unsigned int number = 0;  ///< index of the input, from 0
};

/// The operation of a step.
using ORVFilterOperation =
    std::variant<ORVFilterNothing, ORVFilterPass, ORVFilterBlur, ORVFilterOffset, ORVFilterFlood,
                 ORVFilterMerge, ORVFilterShadow, ORVFilterBlend, ORVFilterComposite, ORVFilterColours,
                 ORVFilterTransfer, ORVFilterConvolution, ORVFilterMorphology, ORVFilterTile,
                 ORVFilterTurbulence, ORVFilterDisplacement, ORVFilterLighting, ORVFilterInput>;

/// One step of a filter.
struct ORVPrintFilterStep {
    static constexpr int kSource = -1;       ///< value of `inputs`: the filtered content
    static constexpr int kSourceAlpha = -2;  ///< value of `inputs`: its opacity, in black

    ORVFilterOperation operation;  ///< what the step computes
    std::vector<int> inputs;       ///< earlier steps or the constants above; as many as the operation takes
    bool isLinear = true;          ///< computed in linearRGB; otherwise in sRGB
    ORVMathBox2D subregion;  ///< user units; the result is transparent outside. May be infinite or empty
};

/// A filter, applied to content. The result of the last step replaces the content.
struct ORVPrintFilter {
    std::span<const ORVPrintFilterStep> steps;  ///< at least one
    ORVMathBox2D region;          ///< the part of the content that is filtered, user units; may be infinite
    ORVMathAffine2D toPage;       ///< from user units to page coordinates; invertible
    unsigned int inputCount = 0;  ///< number of inputs that follow BeginFilter
};
