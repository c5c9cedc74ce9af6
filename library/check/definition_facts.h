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

/// What something is drawn with.
struct DrawnSets {
    ORVPrtStrokeAttributes stroke;
    ORVPrtFillAttributes fill;
    ORVPrtTextAttributes text;
    bool fills = false, strokes = false, isText = false;  ///< which of the sets it is drawn with
    bool isLine = false;                                  ///< stroked whatever is said
    bool isCurrent = false;                               ///< painted in "currentColor"
    std::uint32_t said = 0;                               ///< what the definition says itself, see MeantStyle
    bool operator==(const DrawnSets&) const = default;
};

/// What there is to know of a definition. What a reference makes of it depends on the paint and the fonts
/// that its content has of its own.
struct DefinitionFacts {
    /// More different sets than these are not kept: a reference cannot have them all.
    static constexpr std::size_t kMostSets = 8;

    ElementName element = ElementName::kUnknown;
    const ORVXmlNode* node = nullptr;
    ORVMathBox2D content;         ///< of what it draws, in its own coordinates
    bool isCutElsewhere = false;  ///< some of that lies beyond its viewBox
    bool hasPicture = false;      ///< among its own children
    bool hasViewBox = false;      ///< and is a symbol
    bool isManifold = false;      ///< drawn with more sets than are kept
    std::size_t leaves = 0;       ///< shapes, texts and the like that it draws
    std::vector<DrawnSets> sets;

    /// Takes in what some of its content is drawn with.
    void Add(DrawnSets one);

    /// Whether a reference drawn in `state` replaces something that the definition says of itself.
    bool IsReplacedBy(const SvgDrawState& state) const;
    /// Whether it replaces something that the definition would keep if nothing were handed down to it.
    bool IsChangedBy(const SvgDrawState& state) const;
    /// Whether more than one thing is drawn, or its stroke lies on its fill: what overlaps shows through.
    bool HasOverlaps() const;
    /// Whether the reference asks for a fill or stroke, or for none, and the definition does not say which.
    bool MissesPaintOf(const SvgDrawState& state) const;
};

/// The definitions of a page that the walk has met, by what stands for them among SvgDefinitions.
class MetDefinitions {
public:
    void Add(const ORVPrtGraphicPrimitiveElt& standIn, DefinitionFacts facts) {
        byStandIn_[&standIn] = std::move(facts);
    }
    /// Null for a definition that was not met.
    const DefinitionFacts* Find(const SvgDefinitions::Definition& definition) const;

private:
    std::unordered_map<const ORVPrtGraphicPrimitiveElt*, DefinitionFacts> byStandIn_;
};
