// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interpreters/svg2/css/Style.h"
#include "interpreters/svg2/filters/colour_matrices.h"
#include "interpreters/svg2/tree/Scene.h"
#include "interpreters/svg2/values/filter_list.h"
#include "platform/print/ORVPrintFilter.h"

namespace svg2 {

/// An "feImage" element whose content must be drawn.
struct FilterImage {
    ElementIndex element = kNoElement;
    Rectangle subregion;              ///< in user units of the filtered element
    bool hasX = false, hasY = false;  ///< whether the corner of the subregion is specified
};

/// The effect of an element's "filter" property.
struct FilterDescription {
    std::vector<ORVPrintFilterStep> steps;
    ORVMathBox2D region;                ///< filter region in user units; may be infinite
    std::vector<FilterImage> images;    ///< in the order of the steps' inputs
    std::vector<ElementIndex> filters;  ///< "filter" elements it refers to
};

/// How a "filter" property affects its element.
enum class FilterEffect : std::uint8_t {
    kNone,     ///< drawn as if there were no filter
    kHides,    ///< not drawn
    kFilters,  ///< filtered
};

/// Reads filters: lists of functions and references, and "filter" elements with their templates and
/// primitives.
class FilterReader {
public:
    /// @param active  filters being drawn, to detect references to themselves
    /// @param box     computes the bounding box of the filtered element in its user units; called only if
    ///         needed
    FilterReader(Scene& scene, const std::vector<ElementIndex>& active, std::function<ORVMathBox2D()> box)
        : scene_(scene), document_(scene.GetDocument()), active_(active), findBox_(std::move(box)) {}

    /// @param style     of the filtered element
    /// @param viewport  reference of percentages
    FilterEffect Read(const Style& style, const Viewport& viewport, FilterDescription& description);

private:
    /// A "filter" element with the attributes it takes from its templates.
    struct Definition {
        ElementIndex content = kNoElement;  ///< element whose children are the primitives
        Units units = Units::kBoundingBox, primitiveUnits = Units::kUserSpace;
        ElementIndex places[4] = {kNoElement, kNoElement, kNoElement, kNoElement};
    };

    void AddFunction(const FilterFunction& function, const Style& style);
    void AddColours(const ColourMatrix& matrix);
    FilterEffect AddReference(ElementIndex filter);
    Definition Define(ElementIndex filter) const;
    bool FindRegion(const Definition& definition, Rectangle& region);
    const ORVMathBox2D& Box();

    // ---- primitives (primitives.cpp) ----
    void AddPrimitive(ElementIndex element);
    /// @param inputs  the inputs of "in" and "in2"; those of merges are appended
    ORVFilterOperation MakeOperation(ElementIndex element, const Rectangle& subregion,
                                     std::vector<int>& inputs);
    ORVFilterBlur MakeBlur(ElementIndex element, double byDefault);
    ORVFilterOffset MakeOffset(ElementIndex element, double byDefault);
    ORVFilterOperation MakeShadow(ElementIndex element);
    ORVFilterOperation MakeMerge(ElementIndex element, std::vector<int>& inputs);
    ORVFilterOperation MakeColours(ElementIndex element) const;
    ORVFilterOperation MakeTransfer(ElementIndex element) const;
    ORVFilterOperation MakeComposite(ElementIndex element) const;
    ORVFilterOperation MakeConvolution(ElementIndex element) const;
    ORVFilterOperation MakeMorphology(ElementIndex element);
    ORVFilterOperation MakeTurbulence(ElementIndex element) const;
    ORVFilterOperation MakeDisplacement(ElementIndex element);
    ORVFilterOperation MakeLighting(ElementIndex element);
    ORVFilterOperation MakeImage(ElementIndex element, const Rectangle& subregion);
    Rectangle FindSubregion(ElementIndex element);
    int FindInput(ElementIndex element, Name name);
    int SourceAlpha();
    /// @return the input extended with transparency to the whole region, for steps that process its edges
    int InWholeRegion(int input);
    ORVPrintColour FloodColour(ElementIndex element) const;
    double NumberOf(ElementIndex element, Name name, double byDefault) const {
        return scene_.NumberOf(element, name, byDefault);
    }
    // Lengths and positions of primitives, converted to user units.
    double AcrossOf(double number);
    double DownOf(double number);
    double EitherOf(double number);
    ORVMathPoint2D PlaceOf(double x, double y);

    int AddStep(ORVFilterOperation operation, std::vector<int> inputs, bool isLinear,
                const ORVMathBox2D& subregion);

    Scene& scene_;
    const Document& document_;
    const std::vector<ElementIndex>& active_;
    std::function<ORVMathBox2D()> findBox_;
    std::optional<ORVMathBox2D> box_;
    Viewport viewport_;
    FilterDescription* made_ = nullptr;
    int previous_ = ORVPrintFilterStep::kSource;  // most recent result

    // State of the "filter" element being read.
    Units primitiveUnits_ = Units::kUserSpace;
    Rectangle region_;
    int source_ = ORVPrintFilterStep::kSource;
    std::optional<int> sourceAlpha_;
    bool isFirst_ = true;  // no primitive has been read yet
    std::unordered_map<std::string_view, int> names_;
};

}  // namespace svg2
