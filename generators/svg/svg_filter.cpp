// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_filter.h"

#include <cmath>
#include <cstddef>
#include <span>
#include <string_view>
#include <variant>

#include "generators/common/number_text.h"
#include "generators/svg/svg_style.h"

namespace {

constexpr int kDigits = 9;

void Put(std::string& text, std::string_view name, std::string_view value) {
    text.append(" ").append(name).append("=\"").append(value).append("\"");
}

void Put(std::string& text, std::string_view name, std::span<const double> values) {
    text.append(" ").append(name).append("=\"");
    for (std::size_t i = 0; i < values.size(); ++i) {
        if (i > 0) text += ' ';
        AppendSignificant(text, values[i], kDigits);
    }
    text += '"';
}

void Put(std::string& text, std::string_view name, double value) { Put(text, name, std::span(&value, 1)); }

void PutPair(std::string& text, std::string_view name, double first, double second) {
    const double values[]{first, second};
    Put(text, name, values);
}

void PutBox(std::string& text, const ORVMathBox2D& box) {
    Put(text, "x", box.xMin);
    Put(text, "y", box.yMin);
    Put(text, "width", box.xMax - box.xMin);
    Put(text, "height", box.yMax - box.yMin);
}

bool IsFinite(const ORVMathBox2D& box) { return std::isfinite(box.xMin + box.xMax + box.yMin + box.yMax); }

std::string_view NameOf(ORVFilterChannel channel) {
    constexpr std::string_view kNames[]{"R", "G", "B", "A"};
    return kNames[static_cast<std::size_t>(channel)];
}

std::string NameOf(int input) {
    if (input == ORVPrintFilterStep::kSource) return "SourceGraphic";
    if (input == ORVPrintFilterStep::kSourceAlpha) return "SourceAlpha";
    return "r" + std::to_string(input);
}

/// Appends a colour as two properties.
void PutColour(std::string& text, std::string_view property, const ORVPrintColour& colour, bool hasOpacity) {
    constexpr std::string_view kHex = "0123456789abcdef";
    std::string value = "#";
    for (const unsigned int part : {colour.red, colour.green, colour.blue}) {
        value += kHex[part >> 4U];
        value += kHex[part & 15U];
    }
    Put(text, property, value);
    constexpr double kOpaque = 255.0;
    if (hasOpacity && colour.opacity < 255) Put(text, "flood-opacity", colour.opacity / kOpaque);
}

/// Writes one step: its name, attributes and content.
class StepWriter {
public:
    explicit StepWriter(const ORVPrintFilterStep& step) : step_(step) {}

    void operator()(const ORVFilterNothing&) {
        name = "feFlood";
        Put(attributes, "flood-opacity", 0.0);
    }
    void operator()(const ORVFilterPass&) {
        name = "feOffset";
        PutInputs();
    }
    void operator()(const ORVFilterBlur& blur) {
        name = "feGaussianBlur";
        PutInputs();
        PutPair(attributes, "stdDeviation", blur.xDeviation, blur.yDeviation);
    }
    void operator()(const ORVFilterOffset& offset) {
        name = "feOffset";
        PutInputs();
        PutOffset(offset);
    }
    void operator()(const ORVFilterFlood& flood) {
        name = "feFlood";
        PutColour(attributes, "flood-color", flood.colour, true);
    }
    void operator()(const ORVFilterMerge&) {
        name = "feMerge";
        for (const int input : step_.inputs) content += "<feMergeNode in=\"" + NameOf(input) + "\"/>";
    }
    void operator()(const ORVFilterShadow& shadow) {
        name = "feDropShadow";
        PutInputs();
        PutOffset(shadow.offset);
        PutPair(attributes, "stdDeviation", shadow.blur.xDeviation, shadow.blur.yDeviation);
        PutColour(attributes, "flood-color", shadow.colour, true);
    }
    void operator()(const ORVFilterBlend& blend) {
        name = "feBlend";
        PutInputs();
        Put(attributes, "mode", NameOfSvgBlendMode(blend.mode));
    }
    void operator()(const ORVFilterComposite& composite) {
        constexpr std::string_view kNames[]{"over", "in", "out", "atop", "xor", "lighter", "arithmetic"};
        name = "feComposite";
        PutInputs();
        Put(attributes, "operator", kNames[static_cast<std::size_t>(composite.kind)]);
        if (composite.kind != ORVFilterComposite::Operator::kArithmetic) return;
        Put(attributes, "k1", composite.k1);
        Put(attributes, "k2", composite.k2);
        Put(attributes, "k3", composite.k3);
        Put(attributes, "k4", composite.k4);
    }
    void operator()(const ORVFilterColours& colours) {
        name = "feColorMatrix";
        PutInputs();
        Put(attributes, "values", colours.matrix);
    }
    void operator()(const ORVFilterTransfer& transfer) {
        constexpr std::string_view kChannels[]{"R", "G", "B", "A"};
        constexpr std::string_view kKinds[]{"identity", "table", "discrete", "linear", "gamma"};
        name = "feComponentTransfer";
        PutInputs();
        for (std::size_t i = 0; i < transfer.functions.size(); ++i) {
            const ORVFilterTransfer::Function& function = transfer.functions[i];
            using Kind = ORVFilterTransfer::Function::Kind;
            if (function.kind == Kind::kIdentity) continue;
            content.append("<feFunc").append(kChannels[i]);
            Put(content, "type", kKinds[static_cast<std::size_t>(function.kind)]);
            if (!function.values.empty()) Put(content, "tableValues", function.values);
            if (function.kind == Kind::kLinear) {
                Put(content, "slope", function.slope);
                Put(content, "intercept", function.intercept);
            } else if (function.kind == Kind::kGamma) {
                Put(content, "amplitude", function.amplitude);
                Put(content, "exponent", function.exponent);
                Put(content, "offset", function.offset);
            }
            content += "/>";
        }
    }
    void operator()(const ORVFilterConvolution& convolution) {
        constexpr std::string_view kEdges[]{"duplicate", "wrap", "none"};
        name = "feConvolveMatrix";
        PutInputs();
        PutPair(attributes, "order", convolution.columns, convolution.rows);
        Put(attributes, "kernelMatrix", convolution.kernel);
        Put(attributes, "divisor", convolution.divisor);
        Put(attributes, "bias", convolution.bias);
        Put(attributes, "targetX", convolution.targetX);
        Put(attributes, "targetY", convolution.targetY);
        Put(attributes, "edgeMode", kEdges[static_cast<std::size_t>(convolution.edges)]);
        if (convolution.keepsAlpha) Put(attributes, "preserveAlpha", "true");
    }
    void operator()(const ORVFilterMorphology& morphology) {
        name = "feMorphology";
        PutInputs();
        if (morphology.dilates) Put(attributes, "operator", "dilate");
        PutPair(attributes, "radius", morphology.xRadius, morphology.yRadius);
    }
    void operator()(const ORVFilterTile&) {
        name = "feTile";
        PutInputs();
    }
    void operator()(const ORVFilterTurbulence& turbulence) {
        name = "feTurbulence";
        PutPair(attributes, "baseFrequency", turbulence.xFrequency, turbulence.yFrequency);
        Put(attributes, "numOctaves", turbulence.octaves);
        Put(attributes, "seed", turbulence.seed);
        if (turbulence.isStitched) Put(attributes, "stitchTiles", "stitch");
        if (turbulence.isNoise) Put(attributes, "type", "fractalNoise");
    }
    void operator()(const ORVFilterDisplacement& displacement) {
        name = "feDisplacementMap";
        PutInputs();
        Put(attributes, "scale", displacement.scale);
        Put(attributes, "xChannelSelector", NameOf(displacement.x));
        Put(attributes, "yChannelSelector", NameOf(displacement.y));
    }
    void operator()(const ORVFilterLighting& lighting) {
        name = lighting.isSpecular ? "feSpecularLighting" : "feDiffuseLighting";
        PutInputs();
        Put(attributes, "surfaceScale", lighting.surfaceScale);
        Put(attributes, lighting.isSpecular ? "specularConstant" : "diffuseConstant", lighting.constant);
        if (lighting.isSpecular) Put(attributes, "specularExponent", lighting.exponent);
        PutColour(attributes, "lighting-color", lighting.colour, false);
        PutLight(lighting);
    }
    // Inputs have been rendered as images before.
    void operator()(const ORVFilterInput&) { (*this)(ORVFilterNothing{}); }

    std::string_view name;
    std::string attributes, content;

private:
    void PutInputs() {
        constexpr std::string_view kNames[]{"in", "in2"};
        for (std::size_t i = 0; i < step_.inputs.size() && i < std::size(kNames); ++i)
            Put(attributes, kNames[i], NameOf(step_.inputs[i]));
    }
    void PutOffset(const ORVFilterOffset& offset) {
        Put(attributes, "dx", offset.dx);
        Put(attributes, "dy", offset.dy);
    }
    void PutLight(const ORVFilterLighting& lighting) {
        constexpr std::string_view kNames[]{"feDistantLight", "fePointLight", "feSpotLight"};
        using Light = ORVFilterLighting::Light;
        content.append("<").append(kNames[static_cast<std::size_t>(lighting.light)]);
        if (lighting.light == Light::kDistant) {
            Put(content, "azimuth", lighting.azimuth);
            Put(content, "elevation", lighting.elevation);
        } else {
            Put(content, "x", lighting.x);
            Put(content, "y", lighting.y);
            Put(content, "z", lighting.z);
        }
        if (lighting.light == Light::kSpot) {
            Put(content, "pointsAtX", lighting.pointsAtX);
            Put(content, "pointsAtY", lighting.pointsAtY);
            Put(content, "pointsAtZ", lighting.pointsAtZ);
            Put(content, "specularExponent", lighting.spotExponent);
            if (std::isfinite(lighting.coneAngle)) Put(content, "limitingConeAngle", lighting.coneAngle);
        }
        content += "/>";
    }

    const ORVPrintFilterStep& step_;
};

}  // namespace

std::string WriteSvgFilter(const ORVPrintFilter& filter, const ORVMathBox2D& everywhere) {
    std::string text = " filterUnits=\"userSpaceOnUse\"";
    // Steps that extend beyond the region of the content are treated as infinite.
    bool isEverywhere = !IsFinite(filter.region);
    for (const ORVPrintFilterStep& step : filter.steps)
        isEverywhere = isEverywhere || (!step.subregion.IsEmpty() && !IsFinite(step.subregion));
    const ORVMathBox2D& region = isEverywhere ? everywhere : filter.region;
    PutBox(text, region);
    text += '>';
    for (std::size_t i = 0; i < filter.steps.size(); ++i) {
        const ORVPrintFilterStep& step = filter.steps[i];
        StepWriter writer(step);
        const ORVFilterOperation nothing = ORVFilterNothing{};
        // Readers treat an empty subregion as an unspecified one.
        std::visit(writer, step.subregion.IsEmpty() ? nothing : step.operation);
        text.append("<").append(writer.name).append(writer.attributes);
        if (!step.subregion.IsEmpty() && IsFinite(step.subregion)) PutBox(text, step.subregion);
        if (!step.isLinear) Put(text, "color-interpolation-filters", "sRGB");
        Put(text, "result", NameOf(static_cast<int>(i)));
        if (writer.content.empty())
            text += "/>";
        else
            text.append(">").append(writer.content).append("</").append(writer.name).append(">");
    }
    return text + "</filter>";
}
