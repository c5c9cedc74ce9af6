// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/filter_plan.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <variant>

#include "generators/common/filter_reach.h"
#include "generators/flatten/filter_operations.h"

namespace {

// Margin for rounding, in pixels.
constexpr int kSlack = 2;

FilterBox United(const FilterBox& a, const FilterBox& b) {
    if (a.IsEmpty()) return b;
    if (b.IsEmpty()) return a;
    const int left = std::min(a.left, b.left), top = std::min(a.top, b.top);
    return {left, top, std::max(a.Right(), b.Right()) - left, std::max(a.Bottom(), b.Bottom()) - top};
}

FilterBox Moved(FilterBox box, const FilterShift& by) {
    // In two steps, to avoid overflow for distant corners.
    constexpr std::int64_t kFarthest = 1 << 29;
    box.left = static_cast<int>(std::clamp(std::int64_t{box.left} + by.columns, -kFarthest, kFarthest));
    box.top = static_cast<int>(std::clamp(std::int64_t{box.top} + by.rows, -kFarthest, kFarthest));
    return box;
}

/// The part of an input that a step needs.
class NeedOf {
public:
    /// @param result  required part of the step's result
    /// @param area    the input's subregion
    NeedOf(const FilterGrid& grid, const FilterBox& result, const FilterBox& area)
        : grid_(grid), result_(result), area_(area) {}

    FilterBox operator()(const ORVFilterBlur& blur) const { return OfBlur(InPixels(blur, grid_), result_); }
    FilterBox operator()(const ORVFilterOffset& offset) const {
        const FilterShift shift = InPixels(offset, grid_);
        return Moved(result_, {-shift.columns, -shift.rows});
    }
    FilterBox operator()(const ORVFilterShadow& shadow) const {
        const FilterShadow made = InPixels(shadow, grid_);
        return United(result_, OfBlur(made.blur, Moved(result_, {-made.columns, -made.rows})));
    }
    FilterBox operator()(const ORVFilterConvolution& convolution) const {
        if (convolution.edges == ORVFilterConvolution::Edges::kWrap) return area_;
        return result_.GrownBy(convolution.columns, convolution.rows);
    }
    FilterBox operator()(const ORVFilterMorphology& morphology) const {
        const FilterMorphology made = InPixels(morphology, grid_);
        return result_.GrownBy(made.radiusX, made.radiusY);
    }
    FilterBox operator()(const ORVFilterTile&) const { return area_; }
    FilterBox operator()(const ORVFilterDisplacement& displacement) const {
        const FilterDisplacement made = InPixels(displacement, grid_);
        const auto reach = [](double scale) {
            return static_cast<int>(std::min(std::fabs(scale) / 2.0 + 2.0, 1e8));
        };
        return result_.GrownBy(reach(made.scaleX), reach(made.scaleY));
    }
    FilterBox operator()(const ORVFilterLighting&) const { return result_.GrownBy(1, 1); }
    template <class Same>
    FilterBox operator()(const Same&) const {
        return result_;
    }

private:
    static FilterBox OfBlur(const FilterBlur& blur, const FilterBox& result) {
        return result.GrownBy(FilterBlurReach(blur.sigmaX), FilterBlurReach(blur.sigmaY));
    }

    const FilterGrid& grid_;
    const FilterBox& result_;
    const FilterBox& area_;
};

/// The work for a step, in pixels touched.
class WorkOf {
public:
    WorkOf(const FilterGrid& grid, const FilterBox& input, const FilterBox& result, std::size_t inputs)
        : grid_(grid), input_(input), result_(result), inputs_(inputs) {}

    double operator()(const ORVFilterBlur& blur) const {
        return FilterBlurWork(input_, InPixels(blur, grid_), result_);
    }
    double operator()(const ORVFilterShadow& shadow) const {
        return FilterBlurWork(input_, InPixels(shadow.blur, grid_), result_) + FilterComposeWork(result_, 3);
    }
    double operator()(const ORVFilterColours&) const { return FilterColourWork(result_); }
    double operator()(const ORVFilterTransfer&) const { return FilterColourWork(result_); }
    double operator()(const ORVFilterConvolution& convolution) const {
        return FilterConvolutionWork(InPixels(convolution, input_), result_);
    }
    double operator()(const ORVFilterMorphology& morphology) const {
        return FilterMorphologyWork(input_, InPixels(morphology, grid_), result_);
    }
    double operator()(const ORVFilterTurbulence& turbulence) const {
        return FilterTurbulenceWork(InPixels(turbulence, grid_, {}), result_);
    }
    double operator()(const ORVFilterDisplacement&) const { return FilterDisplacementWork(result_); }
    double operator()(const ORVFilterLighting& lighting) const {
        return FilterLightingWork(InPixels(lighting, grid_, input_), result_);
    }
    template <class Composition>
    double operator()(const Composition&) const {
        return FilterComposeWork(result_, inputs_);
    }

private:
    const FilterGrid& grid_;
    const FilterBox& input_;
    const FilterBox& result_;
    const std::size_t inputs_;
};

}  // namespace

FilterPlan FilterPlan::Make(const ORVPrintFilter& filter, const FilterGrid& grid, const ORVMathBox2D& visible,
                            const ORVMathBox2D& content) {
    FilterPlan plan;
    plan.grid = grid;
    const std::size_t count = filter.steps.size();
    // Extents of all results.
    const auto fromPage = filter.toPage.Inverse();
    if (!fromPage || count == 0) return plan;
    const ORVMathBox2D shown = content.MappedBy(*fromPage);
    const std::vector<ORVMathBox2D> extents = ORVExtentsOfFilter(filter, shown);
    const FilterBox region = grid.PixelsOf(filter.region);
    const FilterBox source = grid.PixelsOf(shown).GrownBy(kSlack, kSlack).CutTo(region);
    plan.results.resize(count);
    plan.subregions.resize(count);
    plan.lastUses.assign(count, 0);
    std::vector<FilterBox> anywhere(count);
    for (std::size_t i = 0; i < count; ++i) {
        const ORVPrintFilterStep& step = filter.steps[i];
        plan.subregions[i] = grid.PixelsOf(step.subregion);
        anywhere[i] = grid.PixelsOf(extents[i]).GrownBy(kSlack, kSlack).CutTo(plan.subregions[i]);
        for (const int input : step.inputs) {
            if (input < 0)
                plan.lastUseOfSource = i;
            else
                plan.lastUses[static_cast<std::size_t>(input)] = i;
        }
    }
    // Required parts, from the last step backwards.
    ORVMathBox2D seen = grid.FromPage(visible);
    ORVMathBox2D inUser;
    if (const auto toUser = grid.fromUser.Inverse()) inUser = seen.MappedBy(*toUser);
    plan.results[count - 1] = grid.PixelsOf(inUser).GrownBy(1, 1).CutTo(anywhere[count - 1]);
    for (std::size_t i = count; i-- > 0;) {
        const FilterBox result = plan.results[i];
        if (result.IsEmpty()) continue;
        const ORVPrintFilterStep& step = filter.steps[i];
        FilterBox first;
        for (std::size_t k = 0; k < step.inputs.size(); ++k) {
            const int input = step.inputs[k];
            const auto number = static_cast<std::size_t>(std::max(input, 0));
            const FilterBox& area = input < 0 ? region : plan.subregions[number];
            const FilterBox need = std::visit(NeedOf(grid, result, area), step.operation);
            FilterBox& wanted = input < 0 ? plan.source : plan.results[number];
            wanted = United(wanted, need.CutTo(input < 0 ? source : anywhere[number]));
            if (k == 0) first = wanted;
        }
        plan.work += std::visit(WorkOf(grid, first, result, step.inputs.size()), step.operation);
    }
    // Pixels in memory while each step is computed.
    std::vector<double> released(count, 0.0);
    for (std::size_t i = 0; i + 1 < count; ++i)
        released[std::max(plan.lastUses[i], i)] += plan.results[i].Area();
    released[plan.lastUseOfSource] += plan.source.Area();
    double kept = plan.source.Area();
    for (std::size_t i = 0; i < count; ++i) {
        kept += plan.results[i].Area();
        plan.pixels = std::max(plan.pixels, kept);
        kept -= released[i];
    }
    return plan;
}
