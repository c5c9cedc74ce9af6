// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/filter_run.h"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

#include "generators/common/generator_status.h"
#include "generators/flatten/filter_operations.h"

namespace {

FilterTransfer Convert(const ORVFilterTransfer::Function& function) {
    FilterTransfer made;
    made.kind = static_cast<FilterTransfer::Kind>(function.kind);
    made.values = function.values;
    made.slope = function.slope;
    made.intercept = function.intercept;
    made.amplitude = function.amplitude;
    made.exponent = function.exponent;
    made.offset = function.offset;
    return made;
}

}  // namespace

/// Computes one step.
class FilterStepRun {
public:
    FilterStepRun(FilterRun& run, std::size_t number)
        : run_(run),
          step_(run.filter_.steps[number]),
          number_(number),
          box_(run.plan_.results[number]),
          colours_(step_.isLinear ? FilterColours::kLinear : FilterColours::kSrgb) {}

    FilterPixels operator()(const ORVFilterNothing&) { return FilterPixels(box_); }
    // Steps that only move pixels do not depend on the colour space.
    FilterPixels operator()(const ORVFilterPass&) { return ClipFilterPixels(TakeAsItIs(0), box_); }
    FilterPixels operator()(const ORVFilterOffset& offset) {
        const FilterShift shift = InPixels(offset, Grid());
        return OffsetFilterPixels(Find(0), shift.columns, shift.rows, box_);
    }
    FilterPixels operator()(const ORVFilterTile&) {
        // The whole subregion repeats, including its transparent parts.
        return TileFilterPixels(Find(0), AreaOf(0), box_);
    }
    FilterPixels operator()(const ORVFilterInput& input) {
        FilterPixels pixels;
        status_ = run_.drawInput_(input.number, box_, pixels);
        return pixels;
    }
    FilterPixels operator()(const ORVFilterBlur& blur) {
        return BlurFilterPixels(Take(0), InPixels(blur, Grid()), box_);
    }
    FilterPixels operator()(const ORVFilterFlood& flood) {
        return FloodFilterPixels(ColourOf(flood.colour), colours_, box_);
    }
    FilterPixels operator()(const ORVFilterMerge&) {
        if (step_.inputs.size() == 1) return ClipFilterPixels(TakeAsItIs(0), box_);
        std::vector<const FilterPixels*> inputs;
        for (std::size_t i = 0; i < step_.inputs.size(); ++i) inputs.push_back(&See(i));
        return MergeFilterPixels(inputs, box_);
    }
    FilterPixels operator()(const ORVFilterShadow& shadow) {
        return ShadowFilterPixels(See(0), InPixels(shadow, Grid()), box_);
    }
    FilterPixels operator()(const ORVFilterBlend& blend) {
        return BlendFilterPixels(See(0), See(1), blend.mode, box_);
    }
    FilterPixels operator()(const ORVFilterComposite& composite) {
        const FilterComposition made{static_cast<FilterOperator>(composite.kind),
                                     {composite.k1, composite.k2, composite.k3, composite.k4}};
        return ComposeFilterPixels(See(0), See(1), made, box_);
    }
    FilterPixels operator()(const ORVFilterColours& colours) {
        return ApplyFilterMatrix(Take(0), {colours.matrix}, box_);
    }
    FilterPixels operator()(const ORVFilterTransfer& transfer) {
        std::array<FilterTransfer, 4> functions;
        std::transform(transfer.functions.begin(), transfer.functions.end(), functions.begin(), Convert);
        return ApplyFilterTransfer(Take(0), functions, box_);
    }
    FilterPixels operator()(const ORVFilterConvolution& convolution) {
        return ConvolveFilterPixels(See(0), InPixels(convolution, AreaOf(0)), box_);
    }
    FilterPixels operator()(const ORVFilterMorphology& morphology) {
        return MorphFilterPixels(See(0), InPixels(morphology, Grid()), box_);
    }
    FilterPixels operator()(const ORVFilterTurbulence& turbulence) {
        return MakeFilterTurbulence(InPixels(turbulence, Grid(), step_.subregion), colours_, box_);
    }
    // Only the map is converted to the step's colour space.
    FilterPixels operator()(const ORVFilterDisplacement& displacement) {
        const FilterPixels& map = See(1);
        return DisplaceFilterPixels(Find(0), map, InPixels(displacement, Grid()), box_);
    }
    // The light colour is not converted, as is common among renderers.
    FilterPixels operator()(const ORVFilterLighting& lighting) {
        FilterPixels lit =
            LightFilterPixels(Find(0), InPixels(lighting, Grid(), AreaOf(0)), FilterColours::kSrgb, box_);
        lit.SetColours(colours_);
        return lit;
    }
    int GetStatus() const { return status_; }

private:
    const FilterGrid& Grid() const { return run_.plan_.grid; }
    FilterPixels& Find(std::size_t input) { return run_.Find(step_.inputs[input], number_); }
    /// An input in the step's colour space.
    const FilterPixels& See(std::size_t input) {
        FilterPixels& pixels = Find(input);
        ConvertFilterColours(pixels, colours_);
        return pixels;
    }
    FilterPixels TakeAsItIs(std::size_t input) {
        FilterPixels& pixels = Find(input);
        return run_.IsLastUse(step_.inputs[input], number_) ? std::move(pixels) : pixels.Copy();
    }
    FilterPixels Take(std::size_t input) {
        See(input);
        return TakeAsItIs(input);
    }
    FilterBox AreaOf(std::size_t input) const {
        const int number = step_.inputs[input];
        return number < 0 ? Grid().PixelsOf(run_.filter_.region)
                          : run_.plan_.subregions[static_cast<std::size_t>(number)];
    }

    FilterRun& run_;
    const ORVPrintFilterStep& step_;
    const std::size_t number_;
    const FilterBox& box_;
    const FilterColours colours_;
    int status_ = kGeneratorDone;
};

bool FilterRun::IsLastUse(int input, std::size_t step) const {
    return input >= 0 ? plan_.lastUses[static_cast<std::size_t>(input)] == step
                      : plan_.lastUseOfSource == step;
}

FilterPixels& FilterRun::Find(int input, std::size_t /*step*/) {
    if (input >= 0) return results_[static_cast<std::size_t>(input)];
    if (input == ORVPrintFilterStep::kSource) return source_;
    if (!std::exchange(hasSourceAlpha_, true)) sourceAlpha_ = AlphaOfFilterPixels(source_);
    return sourceAlpha_;
}

int FilterRun::Compute(FilterPixels& result) {
    for (std::size_t i = 0; i < results_.size(); ++i) {
        const ORVPrintFilterStep& step = filter_.steps[i];
        if (!plan_.results[i].IsEmpty()) {
            FilterStepRun run(*this, i);
            FilterPixels made = std::visit(run, step.operation);
            if (run.GetStatus() != kGeneratorDone) return run.GetStatus();
            results_[i] = std::move(made);
        }
        for (const int input : step.inputs)
            if (input >= 0 && IsLastUse(input, i)) results_[static_cast<std::size_t>(input)] = {};
        if (plan_.lastUseOfSource == i) {
            source_ = {};
            sourceAlpha_ = {};
        }
    }
    result = std::move(results_.back());
    ConvertFilterColours(result, FilterColours::kSrgb);
    return kGeneratorDone;
}
