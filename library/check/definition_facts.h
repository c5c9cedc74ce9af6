// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <unordered_map>
#include <vector>

#include "interpreters/svg/definitions/definitions.h"
#include "library/check/meant_style.h"
#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTextAttributes.h"
#include "platform/xml/vocabulary.h"

/// The attribute sets that an object is drawn with.
struct DrawnSets {
    ORVPrtStrokeAttributes stroke;
    ORVPrtFillAttributes fill;
    ORVPrtTextAttributes text;
    bool fills = false, strokes = false, isText = false;  ///< which of the sets apply
    bool isLine = false;                                  ///< always stroked, whatever the properties say
    bool isCurrent = false;                               ///< painted in "currentColor"
    std::uint32_t said = 0;  ///< SaidOf bits of the properties that the definition specifies itself
    bool operator==(const DrawnSets&) const = default;
};

/// What the check knows about a definition. A reference affects it differently depending on the paint and
/// fonts that its content specifies itself.
struct DefinitionFacts {
    /// Maximum number of different sets kept. If there are more, no reference can match them all.
    static constexpr std::size_t kMostSets = 8;

    ElementName element = ElementName::kUnknown;
    const ORVXmlNode* node = nullptr;
    ORVMathBox2D content;         ///< bounding box of its content, in its own coordinates
    bool isCutElsewhere = false;  ///< some content lies outside its viewBox, where other programs clip it
    bool hasImage = false;        ///< one of its children is an image
    bool hasViewBox = false;      ///< is a symbol with a viewBox
    bool isManifold = false;      ///< drawn with more than kMostSets sets
    std::size_t leaves = 0;       ///< number of shapes, texts and other leaf elements drawn
    std::vector<DrawnSets> sets;

    /// Adds a set that part of the content is drawn with.
    void Add(DrawnSets one);

    /// Whether a reference drawn in `state` overrides a property that the definition specifies itself.
    bool IsReplacedBy(const SvgDrawState& state) const;
    /// Whether such a reference overrides a property that the definition would keep if it inherited nothing.
    bool IsChangedBy(const SvgDrawState& state) const;
    /// Whether several objects are drawn, or a stroke covers its own fill: overlapping parts would show
    /// through.
    bool HasOverlaps() const;
    /// Whether the reference specifies fill or stroke, or "none" for either, and the definition does not.
    bool MissesPaintOf(const SvgDrawState& state) const;
};

/// The definitions met so far on a page, keyed by the primitives that represent them in SvgDefinitions.
class MetDefinitions {
public:
    void Add(const ORVPrtGraphicPrimitiveElt& standIn, DefinitionFacts facts) {
        byStandIn_[&standIn] = std::move(facts);
    }
    /// @return null for a definition that was not met
    const DefinitionFacts* Find(const SvgDefinitions::Definition& definition) const;

private:
    std::unordered_map<const ORVPrtGraphicPrimitiveElt*, DefinitionFacts> byStandIn_;
};
