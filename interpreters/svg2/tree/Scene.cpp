// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/tree/Scene.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "interpreters/svg2/tree/DocumentFonts.h"
#include "interpreters/svg2/values/scanner.h"
#include "interpreters/svg2/values/transform.h"

namespace svg2 {
namespace {

/// The translation of a "use" by x and y, inside its transform.
ORVMathAffine2D PlaceOf(const Scene& scene, ElementIndex element, const Style& style,
                        const Viewport& viewport) {
    if (scene.GetDocument()[element].tag != Tag::kUse) return {};
    return ORVMathAffine2D::Translation(scene.LengthOf(element, Name::kX, style, viewport, Axis::kX),
                                        scene.LengthOf(element, Name::kY, style, viewport, Axis::kY));
}

}  // namespace

double Viewport::Diagonal() const { return std::sqrt((width * width + height * height) / 2.0); }

Scene::Scene(const Document& document, const Medium& medium, std::shared_ptr<StyleWork> work)
    : document_(document),
      cascade_(document, medium, std::move(work)),
      fonts_(cascade_.GetSheets().GetFontFaces().empty()
                 ? nullptr
                 : std::make_unique<DocumentFonts>(cascade_.GetSheets().GetFontFaces())) {}

Scene::~Scene() = default;

double Scene::BaseOf(const Viewport& viewport, Axis axis) {
    switch (axis) {
        case Axis::kX: return viewport.width;
        case Axis::kY: return viewport.height;
        case Axis::kNone: break;
    }
    return viewport.Diagonal();
}

const Style& Scene::StyleInPlace(ElementIndex element) {
    // From the outermost ancestor inwards, without recursion: documents may be deep.
    std::vector<ElementIndex> missing;
    ElementIndex known = element;
    while (known != kNoElement && !stylesInPlace_.contains(known)) {
        missing.push_back(known);
        known = document_[known].parent;
    }
    for (auto next = missing.rbegin(); next != missing.rend(); ++next) {
        const ElementIndex parent = document_[*next].parent;
        const Style initial = Cascade::InitialStyle();
        auto style = std::make_unique<Style>();
        cascade_.Compute(*next, parent == kNoElement ? initial : *stylesInPlace_[parent], *style);
        stylesInPlace_[*next] = std::move(style);
    }
    return *stylesInPlace_[element];
}

std::optional<double> Scene::FindLength(ElementIndex element, Name name, const Style& style,
                                        const Viewport& viewport, Axis axis) const {
    const std::optional<std::string_view> text = cascade_.FindGeometry(element, name, style);
    if (!text) return std::nullopt;
    double number = 0.0;
    if (ReadNumber(*text, number)) return number;
    Length length;
    if (!ReadLength(*text, cascade_.SizesOf(style), length)) return std::nullopt;
    return length.Resolve(BaseOf(viewport, axis));
}

double Scene::NumberOf(ElementIndex element, Name name, double byDefault) const {
    double number = 0.0;
    return ReadNumber(document_.ValueOf(element, name), number) ? number : byDefault;
}

Units Scene::UnitsOf(ElementIndex element, Name name, Units byDefault) const {
    const std::string_view text = Trim(document_.ValueOf(element, name));
    if (text == "userSpaceOnUse") return Units::kUserSpace;
    if (text == "objectBoundingBox") return Units::kBoundingBox;
    return byDefault;
}

ORVMathPoint2D Scene::OriginOf(const Style& style, const Rectangle& box) const {
    if (style.transformOrigin.empty()) return {box.x, box.y};
    Scanner scanner(style.transformOrigin);
    const UnitSizes sizes = cascade_.SizesOf(style);
    struct Word {
        std::string_view text;
        int axis;  // 0 x, 1 y, 2 either
        double percent;
    };
    constexpr Word kWords[] = {
        {"left", 0, 0.0}, {"right", 0, 100.0}, {"top", 1, 0.0}, {"bottom", 1, 100.0}, {"center", 2, 50.0}};
    Length parts[2] = {{0.0, 50.0}, {0.0, 50.0}};
    for (int place = 0; place < 2; ++place) {
        scanner.SkipCommaSpace();
        if (scanner.AtEnd()) break;
        Length length;
        if (TakeLength(scanner, sizes, length)) {
            parts[place] = length;
            continue;
        }
        const std::string_view word = scanner.TakeName();
        const Word* const row = std::find_if(std::begin(kWords), std::end(kWords), [word](const Word& known) {
            return EqualsIgnoringCase(word, known.text);
        });
        if (row == std::end(kWords)) return {box.x, box.y};
        parts[row->axis == 2 ? place : row->axis] = {0.0, row->percent};
    }
    return {box.x + parts[0].Resolve(box.width), box.y + parts[1].Resolve(box.height)};
}

// The reference box of a transform's origin and percentages.
Rectangle Scene::ReferenceBox(ElementIndex element, const Style& style, const Viewport& viewport) const {
    const std::string_view name = style.transformBox;
    const bool isStrokeBox = EqualsIgnoringCase(name, "stroke-box") || EqualsIgnoringCase(name, "border-box");
    const bool isFillBox = EqualsIgnoringCase(name, "fill-box") || EqualsIgnoringCase(name, "content-box");
    if (!boxes_ || (!isStrokeBox && !isFillBox)) return {0.0, 0.0, viewport.width, viewport.height};
    const ORVMathBox2D own = boxes_->BoxOf(element, style, viewport);
    if (own.IsEmpty()) return {};
    const ORVMathBox2D box = MapBox(PlaceOf(*this, element, style, viewport), own);
    const bool grows = isStrokeBox && style.stroke.kind != Paint::Kind::kNone;
    const double reach = grows ? style.strokeWidth.Resolve(viewport.Diagonal()) / 2.0 : 0.0;
    return {box.xMin - reach, box.yMin - reach, box.xMax - box.xMin + 2.0 * reach,
            box.yMax - box.yMin + 2.0 * reach};
}

// Computes the bounding box, which is expensive, only if the transform needs it.
bool Scene::ReadTransform(ElementIndex element, const Style& style, const Viewport& viewport,
                          ORVMathAffine2D& transform, Name attribute) const {
    const auto box = [&] { return ReferenceBox(element, style, viewport); };
    bool isRead = false;
    if (style.geometry) {
        for (const auto& [name, text] : *style.geometry) {
            if (name != Name::kTransform) continue;
            const Rectangle reference = text.find('%') == std::string_view::npos ? Rectangle{} : box();
            isRead = ReadTransformProperty(text, cascade_.SizesOf(style), reference.width, reference.height,
                                           transform);
        }
    }
    if (!isRead) {
        const std::optional<std::string_view> text = document_.Find(element, attribute);
        if (!text || !ReadTransformAttribute(*text, transform)) return false;
    }
    if (!style.transformOrigin.empty() || !style.transformBox.empty()) {
        const ORVMathPoint2D origin = OriginOf(style, box());
        transform = ORVMathAffine2D::Translation(origin.x, origin.y) * transform *
                    ORVMathAffine2D::Translation(-origin.x, -origin.y);
    }
    return true;
}

bool Scene::TransformOf(ElementIndex element, const Style& style, const Viewport& viewport,
                        ORVMathAffine2D& transform, Name attribute) const {
    transform = {};
    if (!ReadTransform(element, style, viewport, transform, attribute)) transform = {};
    // Clips and masks of a "use" include its translation.
    if (document_[element].tag == Tag::kUse) transform = transform * PlaceOf(*this, element, style, viewport);
    return IsInvertible(transform);
}

bool IsInvertible(const ORVMathAffine2D& map) {
    const double determinant = map.Determinant();
    return map.IsFinite() && determinant != 0.0 && std::isfinite(determinant);
}

ORVMathAffine2D Inverse(const ORVMathAffine2D& map) {
    const double d = map.Determinant();
    return {map.m22 / d,
            -map.m12 / d,
            -map.m21 / d,
            map.m11 / d,
            (map.m12 * map.dy - map.m22 * map.dx) / d,
            (map.m21 * map.dx - map.m11 * map.dy) / d};
}

ORVMathBox2D MapBox(const ORVMathAffine2D& map, const ORVMathBox2D& box) {
    ORVMathBox2D mapped;
    if (box.IsEmpty()) return mapped;
    for (const double x : {box.xMin, box.xMax})
        for (const double y : {box.yMin, box.yMax}) mapped.Add(map({x, y}));
    return mapped;
}

void Unite(ORVMathBox2D& box, const ORVMathBox2D& other) {
    if (other.IsEmpty()) return;
    box.Add({other.xMin, other.yMin});
    box.Add({other.xMax, other.yMax});
}

}  // namespace svg2
