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

/// Sizes that percentages refer to, in user units.
struct Viewport {
    double width = 0.0, height = 0.0;
    double Diagonal() const;  ///< what lengths of no direction refer to
};

/// What a length's percentage refers to.
enum class Axis : std::uint8_t { kX, kY, kNone };

/// How coordinates of a definition are meant.
enum class Units : std::uint8_t { kUserSpace, kBoundingBox };

/// Knows the boxes of elements, which some transforms turn about.
class ElementBoxes {
public:
    virtual ~ElementBoxes() = default;
    /// The box of an element's outlines in its own user units, empty when it has none.
    virtual ORVMathBox2D BoxOf(ElementIndex element, const Style& style, const Viewport& viewport) = 0;
};

/// A document with its styles, as all who draw it need it.
class Scene {
public:
    /// @param work  that the scene shares with others; null for its own
    Scene(const Document& document, const Medium& medium, std::shared_ptr<StyleWork> work = nullptr);
    ~Scene();

    const Document& GetDocument() const { return document_; }
    Cascade& GetCascade() { return cascade_; }
    const Cascade& GetCascade() const { return cascade_; }

    /// The fonts that the document brings; null for none.
    DocumentFonts* GetFonts() const { return fonts_.get(); }

    /// The style of an element where it stands, as those have it that are drawn from elsewhere: it inherits
    /// from its own parents. Kept, so to be asked for definitions, not for content.
    const Style& StyleInPlace(ElementIndex element);

    /// Definitions of one kind from the one that is asked for to the last that it borrows from by "href". One
    /// that comes again ends the chain.
    /// @param isOfKind  whether a tag is of the kind
    template <class Test>
    std::vector<ElementIndex> TemplateChain(ElementIndex definition, Test isOfKind) const;

    /// A length of an element's shape or place; nothing when it is absent, "auto", or cannot be read.
    std::optional<double> FindLength(ElementIndex element, Name name, const Style& style,
                                     const Viewport& viewport, Axis axis) const;
    double LengthOf(ElementIndex element, Name name, const Style& style, const Viewport& viewport, Axis axis,
                    double byDefault = 0.0) const {
        return FindLength(element, name, style, viewport, axis).value_or(byDefault);
    }
    /// A number; the default when it is absent or cannot be read.
    double NumberOf(ElementIndex element, Name name, double byDefault) const;
    /// "userSpaceOnUse" or "objectBoundingBox"; the default when it is anything else.
    Units UnitsOf(ElementIndex element, Name name, Units byDefault) const;

    /// Where boxes of elements come from. Without them, transforms refer to the viewport alone.
    /// @param boxes  must outlive the scene's use, or be null
    void SetBoxes(ElementBoxes* boxes) { boxes_ = boxes; }

    /// The transform of an element, about its origin; of "use" also to its place. @return false when it is
    /// singular: nothing shows
    [[nodiscard]] bool TransformOf(ElementIndex element, const Style& style, const Viewport& viewport,
                                   ORVMathAffine2D& transform, Name attribute = Name::kTransform) const;

    static double BaseOf(const Viewport& viewport, Axis axis);

    /// The child that a "switch" shows. It is looked for once, however often the element is drawn.
    /// @param find  looks for it; gives kNoElement when there is none
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

/// True for maps that take areas to areas.
bool IsInvertible(const ORVMathAffine2D& map);
/// The inverse of a map that has one.
ORVMathAffine2D Inverse(const ORVMathAffine2D& map);
/// The box around a mapped one, empty when that was.
ORVMathBox2D MapBox(const ORVMathAffine2D& map, const ORVMathBox2D& box);
/// Grows a box around another one.
void Unite(ORVMathBox2D& box, const ORVMathBox2D& other);

}  // namespace svg2
