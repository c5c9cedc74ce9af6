// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/paint/pattern_definition.h"

#include <cstddef>
#include <iterator>

#include "interpreters/svg2/tree/structure.h"

namespace svg2 {
namespace {

constexpr Name kPlaces[] = {Name::kX, Name::kY, Name::kWidth, Name::kHeight};

}  // namespace

PatternDefinition ResolvePattern(Scene& scene, ElementIndex pattern) {
    const Document& document = scene.GetDocument();
    PatternDefinition definition;
    bool hasUnits = false, hasContentUnits = false, hasTransform = false, hasRatio = false;
    for (const ElementIndex next :
         scene.TemplateChain(pattern, [](Tag tag) { return tag == Tag::kPattern; })) {
        const Style& style = scene.StyleInPlace(next);
        for (std::size_t i = 0; i < std::size(kPlaces); ++i) {
            Length length;
            if (definition.places[i] == kNoElement &&
                ReadLength(document.ValueOf(next, kPlaces[i]), scene.GetCascade().SizesOf(style), length))
                definition.places[i] = next;
        }
        if (!hasUnits && (hasUnits = document.Find(next, Name::kPatternUnits).has_value()))
            definition.units = scene.UnitsOf(next, Name::kPatternUnits, Units::kBoundingBox);
        if (!hasContentUnits &&
            (hasContentUnits = document.Find(next, Name::kPatternContentUnits).has_value()))
            definition.contentUnits = scene.UnitsOf(next, Name::kPatternContentUnits, Units::kUserSpace);
        if (!hasTransform && (document.Find(next, Name::kPatternTransform) || style.geometry)) {
            hasTransform = true;
            definition.isSingular =
                !scene.TransformOf(next, style, {1.0, 1.0}, definition.transform, Name::kPatternTransform);
        }
        if (!definition.viewBox) definition.viewBox = ReadViewBox(document.ValueOf(next, Name::kViewBox));
        if (!hasRatio && (hasRatio = document.Find(next, Name::kPreserveAspectRatio).has_value()))
            definition.ratio = ReadAspectRatio(document.ValueOf(next, Name::kPreserveAspectRatio));
        if (definition.content == kNoElement && document[next].firstChild != kNoElement)
            definition.content = next;
    }
    return definition;
}

Rectangle PatternDefinition::TileOf(Scene& scene, const ORVMathBox2D& box, const Viewport& viewport) const {
    const bool isOfBox = units == Units::kBoundingBox;
    const Viewport unit{1.0, 1.0};
    const auto placeOf = [&](int i, Axis axis) {
        if (places[i] == kNoElement) return 0.0;
        return scene.LengthOf(places[i], kPlaces[i], scene.StyleInPlace(places[i]), isOfBox ? unit : viewport,
                              axis);
    };
    const Rectangle tile{placeOf(0, Axis::kX), placeOf(1, Axis::kY), placeOf(2, Axis::kX),
                         placeOf(3, Axis::kY)};
    if (!isOfBox) return tile;
    const double width = box.xMax - box.xMin, height = box.yMax - box.yMin;
    return {box.xMin + tile.x * width, box.yMin + tile.y * height, tile.width * width, tile.height * height};
}

bool PatternDefinition::HasTiles(const Rectangle& tile) const {
    return content != kNoElement && tile.width > 0.0 && tile.height > 0.0 &&
           !(viewBox && (viewBox->width == 0.0 || viewBox->height == 0.0));
}

}  // namespace svg2
