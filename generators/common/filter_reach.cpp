// SPDX-License-Identifier: Apache-2.0
#include "generators/common/filter_reach.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <variant>

namespace {

// Reach of a blur by three running means, in standard deviations.
constexpr double kBlurReach = 3.1;

ORVMathBox2D Grown(ORVMathBox2D box, double x, double y) {
    if (box.IsEmpty()) return box;
    box.xMin -= x;
    box.xMax += x;
    box.yMin -= y;
    box.yMax += y;
    return box;
}

ORVMathBox2D Moved(ORVMathBox2D box, const ORVFilterOffset& by) {
    if (box.IsEmpty()) return box;
    box.xMin += by.dx;
    box.xMax += by.dx;
    box.yMin += by.dy;
    box.yMax += by.dy;
    return box;
}

ORVMathBox2D United(ORVMathBox2D a, const ORVMathBox2D& b) {
    a.Unite(b);
    return a;
}

ORVMathBox2D Blurred(const ORVMathBox2D& box, const ORVFilterBlur& blur) {
    return Grown(box, kBlurReach * blur.xDeviation, kBlurReach * blur.yDeviation);
}

/// The value of a transfer function at opacity 0.
double AtZero(const ORVFilterTransfer::Function& function) {
    using Kind = ORVFilterTransfer::Function::Kind;
    switch (function.kind) {
        case Kind::kIdentity: break;
        case Kind::kTable:
        case Kind::kDiscrete: return function.values.empty() ? 0.0 : function.values.front();
        case Kind::kLinear: return function.intercept;
        case Kind::kGamma: return function.offset + (function.exponent > 0.0 ? 0.0 : function.amplitude);
    }
    return 0.0;
}

/// Computes the extent of a step from those of its inputs. Unlimited extents are clipped to the step's
/// subregion.
class ExtentOf {
public:
    ExtentOf(const ORVPrintFilterStep& step, const std::vector<ORVMathBox2D>& known,
             const ORVMathBox2D& source)
        : step_(step), known_(known), source_(source) {}

    ORVMathBox2D operator()(const ORVFilterNothing&) const { return {}; }
    ORVMathBox2D operator()(const ORVFilterPass&) const { return Input(0); }
    ORVMathBox2D operator()(const ORVFilterBlur& blur) const { return Blurred(Input(0), blur); }
    ORVMathBox2D operator()(const ORVFilterOffset& offset) const { return Moved(Input(0), offset); }
    ORVMathBox2D operator()(const ORVFilterFlood& flood) const {
        return flood.colour.opacity == 0 ? ORVMathBox2D() : step_.subregion;
    }
    ORVMathBox2D operator()(const ORVFilterMerge&) const {
        ORVMathBox2D all;
        for (std::size_t i = 0; i < step_.inputs.size(); ++i) all.Unite(Input(i));
        return all;
    }
    ORVMathBox2D operator()(const ORVFilterShadow& shadow) const {
        return United(Input(0), Moved(Blurred(Input(0), shadow.blur), shadow.offset));
    }
    ORVMathBox2D operator()(const ORVFilterBlend&) const { return United(Input(0), Input(1)); }
    ORVMathBox2D operator()(const ORVFilterComposite& composite) const {
        using Operator = ORVFilterComposite::Operator;
        switch (composite.kind) {
            case Operator::kIn: return Input(0).Overlap(Input(1));
            case Operator::kOut: return Input(0);
            case Operator::kAtop: return Input(1);
            case Operator::kArithmetic:
                if (composite.k4 > 0.0) return step_.subregion;
                [[fallthrough]];
            default: return United(Input(0), Input(1));
        }
    }
    ORVMathBox2D operator()(const ORVFilterColours& colours) const {
        constexpr std::size_t kAddedOpacity = 19;
        return colours.matrix[kAddedOpacity] > 0.0 ? step_.subregion : Input(0);
    }
    ORVMathBox2D operator()(const ORVFilterTransfer& transfer) const {
        return AtZero(transfer.functions[3]) > 0.0 ? step_.subregion : Input(0);
    }
    ORVMathBox2D operator()(const ORVFilterMorphology& morphology) const {
        return morphology.dilates ? Grown(Input(0), morphology.xRadius, morphology.yRadius) : Input(0);
    }
    ORVMathBox2D operator()(const ORVFilterDisplacement& displacement) const {
        const double reach = std::fabs(displacement.scale) / 2.0;
        return Grown(Input(0), reach, reach);
    }
    template <class Anywhere>
    ORVMathBox2D operator()(const Anywhere&) const {
        return step_.subregion;
    }

private:
    const ORVMathBox2D& Input(std::size_t i) const {
        const int input = step_.inputs[i];
        return input < 0 ? source_ : known_[static_cast<std::size_t>(input)];
    }

    const ORVPrintFilterStep& step_;
    const std::vector<ORVMathBox2D>& known_;
    const ORVMathBox2D& source_;
};

}  // namespace

std::vector<ORVMathBox2D> ORVExtentsOfFilter(const ORVPrintFilter& filter, const ORVMathBox2D& content) {
    const ORVMathBox2D source = content.Overlap(filter.region);
    std::vector<ORVMathBox2D> extents;
    extents.reserve(filter.steps.size());
    for (const ORVPrintFilterStep& step : filter.steps)
        extents.push_back(
            std::visit(ExtentOf(step, extents, source), step.operation).Overlap(step.subregion));
    return extents;
}

ORVMathBox2D ORVReachOfFilter(const ORVPrintFilter& filter, const ORVMathBox2D& content) {
    const auto fromPage = filter.toPage.Inverse();
    if (!fromPage || filter.steps.empty()) return {};
    const ORVMathBox2D last = ORVExtentsOfFilter(filter, content.MappedBy(*fromPage)).back();
    return last.MappedBy(filter.toPage);
}
