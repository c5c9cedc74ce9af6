// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/filters/FilterReader.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "interpreters/svg2/paint/gradients.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

constexpr Name kPlaces[] = {Name::kX, Name::kY, Name::kWidth, Name::kHeight};

ORVMathBox2D Everywhere() {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    return {-kInfinity, kInfinity, -kInfinity, kInfinity};
}

bool IsPrimitive(Tag tag) {
    switch (tag) {
        case Tag::kFeBlend:
        case Tag::kFeColorMatrix:
        case Tag::kFeComponentTransfer:
        case Tag::kFeComposite:
        case Tag::kFeConvolveMatrix:
        case Tag::kFeDiffuseLighting:
        case Tag::kFeDisplacementMap:
        case Tag::kFeDropShadow:
        case Tag::kFeFlood:
        case Tag::kFeGaussianBlur:
        case Tag::kFeImage:
        case Tag::kFeMerge:
        case Tag::kFeMorphology:
        case Tag::kFeOffset:
        case Tag::kFeSpecularLighting:
        case Tag::kFeTile:
        case Tag::kFeTurbulence: return true;
        default: return false;
    }
}

bool HasPrimitives(const Document& document, ElementIndex filter) {
    for (ElementIndex child = document[filter].firstChild; child != kNoElement;
         child = document[child].nextSibling)
        if (IsPrimitive(document[child].tag)) return true;
    return false;
}

}  // namespace

FilterEffect FilterReader::Read(const Style& style, const Viewport& viewport,
                                FilterDescription& description) {
    std::vector<FilterFunction> list;
    if (!ReadFilterList(style.filter, scene_.GetCascade().SizesOf(style), list)) return FilterEffect::kNone;
    made_ = &description;
    viewport_ = viewport;
    description.region = Everywhere();
    for (const FilterFunction& function : list) {
        if (function.kind != FilterFunction::Kind::kReference) {
            AddFunction(function, style);
            continue;
        }
        const ElementIndex filter = document_.FindById(function.reference);
        if (function.reference.empty() || filter == kNoElement || document_[filter].tag != Tag::kFilter)
            continue;
        if (std::find(active_.begin(), active_.end(), filter) != active_.end()) return FilterEffect::kNone;
        if (const FilterEffect effect = AddReference(filter); effect != FilterEffect::kFilters) return effect;
    }
    return description.steps.empty() ? FilterEffect::kNone : FilterEffect::kFilters;
}

const ORVMathBox2D& FilterReader::Box() {
    if (!box_) box_ = findBox_();
    return *box_;
}

int FilterReader::AddStep(ORVFilterOperation operation, std::vector<int> inputs, bool isLinear,
                          const ORVMathBox2D& subregion) {
    made_->steps.push_back({std::move(operation), std::move(inputs), isLinear, subregion});
    return static_cast<int>(made_->steps.size()) - 1;
}

void FilterReader::AddColours(const ColourMatrix& matrix) {
    previous_ = AddStep(ORVFilterColours{matrix}, {previous_}, false, Everywhere());
}

void FilterReader::AddFunction(const FilterFunction& function, const Style& style) {
    using Kind = FilterFunction::Kind;
    const ORVFilterBlur blur{function.deviation, function.deviation};
    switch (function.kind) {
        case Kind::kReference: return;
        case Kind::kBlur: previous_ = AddStep(blur, {previous_}, false, Everywhere()); return;
        case Kind::kDropShadow: {
            const Colour colour = function.colour.value_or(style.colour);
            const ORVFilterShadow shadow{blur, {function.dx, function.dy}, MakeColour(colour, 1.0)};
            previous_ = AddStep(shadow, {previous_}, false, Everywhere());
            return;
        }
        case Kind::kBrightness: return AddColours(BrightnessMatrix(function.amount));
        case Kind::kContrast: return AddColours(ContrastMatrix(function.amount));
        case Kind::kGrayscale: return AddColours(GrayscaleMatrix(function.amount));
        case Kind::kHueRotate: return AddColours(HueRotateMatrix(function.amount));
        case Kind::kInvert: return AddColours(InvertMatrix(function.amount));
        case Kind::kOpacity: return AddColours(OpacityMatrix(function.amount));
        case Kind::kSaturate: return AddColours(SaturateMatrix(function.amount));
        case Kind::kSepia: return AddColours(SepiaMatrix(function.amount));
    }
}

FilterReader::Definition FilterReader::Define(ElementIndex filter) const {
    Definition definition;
    constexpr std::size_t kLongestChain = 256;
    std::vector<ElementIndex> chain;
    bool hasUnits = false, hasPrimitiveUnits = false;
    for (ElementIndex next = filter;
         next != kNoElement && chain.size() < kLongestChain && document_[next].tag == Tag::kFilter &&
         std::find(chain.begin(), chain.end(), next) == chain.end();
         next = document_.FindByReference(Trim(document_.ValueOf(next, Name::kHref)))) {
        chain.push_back(next);
        for (std::size_t i = 0; i < std::size(kPlaces); ++i)
            if (definition.places[i] == kNoElement && document_.Find(next, kPlaces[i]))
                definition.places[i] = next;
        if (!hasUnits && (hasUnits = document_.Find(next, Name::kFilterUnits).has_value()))
            definition.units = scene_.UnitsOf(next, Name::kFilterUnits, Units::kBoundingBox);
        if (!hasPrimitiveUnits &&
            (hasPrimitiveUnits = document_.Find(next, Name::kPrimitiveUnits).has_value()))
            definition.primitiveUnits = scene_.UnitsOf(next, Name::kPrimitiveUnits, Units::kUserSpace);
        if (definition.content == kNoElement && HasPrimitives(document_, next)) definition.content = next;
    }
    return definition;
}

/// @return false if there is no region or its area is 0
bool FilterReader::FindRegion(const Definition& definition, Rectangle& region) {
    const bool isOfBox = definition.units == Units::kBoundingBox;
    const Viewport unit{1.0, 1.0};
    const Viewport& sizes = isOfBox ? unit : viewport_;
    constexpr double kMargin = -0.1, kSize = 1.2;  // the default region
    const auto lengthOf = [&](std::size_t i, Axis axis, double share) {
        const double byDefault = share * Scene::BaseOf(sizes, axis);
        const ElementIndex element = definition.places[i];
        if (element == kNoElement) return byDefault;
        return scene_.LengthOf(element, kPlaces[i], scene_.StyleInPlace(element), sizes, axis, byDefault);
    };
    region = {lengthOf(0, Axis::kX, kMargin), lengthOf(1, Axis::kY, kMargin), lengthOf(2, Axis::kX, kSize),
              lengthOf(3, Axis::kY, kSize)};
    if (isOfBox) {
        const ORVMathBox2D& box = Box();
        const double width = box.xMax - box.xMin, height = box.yMax - box.yMin;
        if (!(width > 0.0) || !(height > 0.0)) return false;
        region = {box.xMin + region.x * width, box.yMin + region.y * height, region.width * width,
                  region.height * height};
    }
    return region.width > 0.0 && region.height > 0.0 &&
           std::isfinite(region.x + region.y + region.width + region.height);
}

FilterEffect FilterReader::AddReference(ElementIndex filter) {
    const Definition definition = Define(filter);
    if (definition.content == kNoElement || !FindRegion(definition, region_)) return FilterEffect::kHides;
    made_->filters.push_back(filter);
    primitiveUnits_ = definition.primitiveUnits;
    // Its source is the result so far, inside its region.
    if (made_->steps.empty())
        made_->region = region_.Box();
    else
        previous_ = AddStep(ORVFilterPass{}, {previous_}, false, region_.Box());
    source_ = previous_;
    sourceAlpha_.reset();
    names_.clear();
    isFirst_ = true;
    for (ElementIndex child = document_[definition.content].firstChild; child != kNoElement;
         child = document_[child].nextSibling)
        if (IsPrimitive(document_[child].tag)) AddPrimitive(child);
    return FilterEffect::kFilters;
}

}  // namespace svg2
