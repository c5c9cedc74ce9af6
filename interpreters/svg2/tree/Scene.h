// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "interpreters/svg2/css/Cascade.h"
#include "interpreters/svg2/document/Document.h"
#include "interpreters/svg2/values/length.h"
#include "interpreters/svg2/values/scanner.h"
#include "interpreters/svg2/values/view_box.h"

namespace svg2 {

class DocumentFonts;

/// The reference sizes of percentages, in user units.
struct Viewport {
    double width = 0.0, height = 0.0;
    double Diagonal() const;  ///< reference of lengths along neither axis
};

/// The viewport dimension that a percentage refers to.
enum class Axis : std::uint8_t { kX, kY, kNone };

/// The coordinate system of a definition's attributes.
enum class Units : std::uint8_t { kUserSpace, kBoundingBox };

/// Provides the bounding boxes of elements, which transforms may refer to.
class ElementBoxes {
public:
    virtual ~ElementBoxes() = default;
    /// Bounding box of an element's outlines in its own user units; empty if it has none.
    virtual ORVMathBox2D BoxOf(ElementIndex element, const Style& style, const Viewport& viewport) = 0;
};

/// A document with its styles and other shared data for drawing it.
class Scene {
public:
    /// @param work  budget shared with other scenes; null to create one
    Scene(const Document& document, const Medium& medium, std::shared_ptr<StyleWork> work = nullptr);
    ~Scene();

    const Document& GetDocument() const { return document_; }
    Cascade& GetCascade() { return cascade_; }
    const Cascade& GetCascade() const { return cascade_; }

    /// The embedded fonts of the document; null if there are none.
    DocumentFonts* GetFonts() const { return fonts_.get(); }

    /// The style of an element at its own place in the document, inheriting from its own ancestors even if it
    /// is drawn from elsewhere. Results are cached, so use it for definitions, not for content.
    const Style& StyleInPlace(ElementIndex element);

    /// The definition and all templates reached through "href", in that order. The chain ends at a cycle.
    /// @param isOfKind  whether a tag is of the required kind
    template <class Test>
    std::vector<ElementIndex> TemplateChain(ElementIndex definition, Test isOfKind) const;

    /// A length of an element's geometry; empty if absent, "auto" or invalid.
    std::optional<double> FindLength(ElementIndex element, Name name, const Style& style,
                                     const Viewport& viewport, Axis axis) const;
    double LengthOf(ElementIndex element, Name name, const Style& style, const Viewport& viewport, Axis axis,
                    double byDefault = 0.0) const {
        return FindLength(element, name, style, viewport, axis).value_or(byDefault);
    }
    /// A number; the default if absent or invalid.
    double NumberOf(ElementIndex element, Name name, double byDefault) const;
    /// "userSpaceOnUse" or "objectBoundingBox"; the default for any other value.
    Units UnitsOf(ElementIndex element, Name name, Units byDefault) const;

    /// Sets the source of bounding boxes. Without it, transforms refer to the viewport only.
    /// @param boxes  must outlive the scene's use, or be null
    void SetBoxes(ElementBoxes* boxes) { boxes_ = boxes; }

    /// The transform of an element about its origin; for "use", including its x and y.
    /// @return false if it is singular, so nothing is visible
    [[nodiscard]] bool TransformOf(ElementIndex element, const Style& style, const Viewport& viewport,
                                   ORVMathAffine2D& transform, Name attribute = Name::kTransform) const;

    static double BaseOf(const Viewport& viewport, Axis axis);

    /// The child that a "switch" shows. The result is cached.
    /// @param find  determines the child; returns kNoElement if there is none
    template <class Find>
    ElementIndex ChildOfSwitch(ElementIndex element, Find find) {
        const auto [place, isNew] = childrenOfSwitches_.try_emplace(element, kNoElement);
        if (isNew) place->second = find();
        return place->second;
    }

private:
    Rectangle ReferenceBox(ElementIndex element, const Style& style, const Viewport& viewport) const;
    ORVMathPoint2D OriginOf(const Style& style, const Rectangle& box) const;
    bool ReadTransform(ElementIndex element, const Style& style, const Viewport& viewport,
                       ORVMathAffine2D& transform, Name attribute) const;

    const Document& document_;
    ElementBoxes* boxes_ = nullptr;
    Cascade cascade_;
    const std::unique_ptr<DocumentFonts> fonts_;
    std::unordered_map<ElementIndex, std::unique_ptr<Style>> stylesInPlace_;
    std::unordered_map<ElementIndex, ElementIndex> childrenOfSwitches_;
};

template <class Test>
std::vector<ElementIndex> Scene::TemplateChain(ElementIndex definition, Test isOfKind) const {
    constexpr std::uint64_t kStepsPerLink = 100;
    StyleWork& work = *cascade_.GetWork();
    std::vector<ElementIndex> chain;
    std::unordered_set<ElementIndex> met;
    while (definition != kNoElement && isOfKind(document_[definition].tag) && !work.IsSpent() &&
           met.insert(definition).second) {
        work.Take(kStepsPerLink);
        chain.push_back(definition);
        definition = document_.FindByReference(Trim(document_.ValueOf(definition, Name::kHref)));
    }
    return chain;
}

/// Whether a transformation has an inverse.
bool IsInvertible(const ORVMathAffine2D& map);
/// The inverse of an invertible transformation.
ORVMathAffine2D Inverse(const ORVMathAffine2D& map);
/// The bounding box of a transformed box; empty if the box is empty.
ORVMathBox2D MapBox(const ORVMathAffine2D& map, const ORVMathBox2D& box);
/// Extends a box to include another one.
void Unite(ORVMathBox2D& box, const ORVMathBox2D& other);

}  // namespace svg2
