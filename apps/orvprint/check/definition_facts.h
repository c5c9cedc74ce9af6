#pragma once

#include <unordered_map>
#include <vector>

#include "platform/model/ORVPrtFillAttributes.h"
#include "platform/model/ORVPrtStrokeAttributes.h"
#include "platform/model/ORVPrtTextAttributes.h"
#include "platform/xml/vocabulary.h"
#include "plugin/structure/definitions.h"

/// The attribute sets that something is drawn with; those that it does not use are the default ones.
struct DrawnSets {
    ORVPrtStrokeAttributes stroke;
    ORVPrtFillAttributes fill;
    ORVPrtTextAttributes text;
    bool operator==(const DrawnSets&) const = default;
};

/// What there is to know of a definition. What a reference makes of it depends on the paint and the fonts
/// that its content has of its own.
struct DefinitionFacts {
    /// More different sets than these are not kept: a reference cannot have them all.
    static constexpr std::size_t kMostSets = 8;

    ElementName element = ElementName::kUnknown;
    bool hasPicture = false;  ///< among its own children
    bool hasViewBox = false;  ///< and is a symbol
    bool isManifold = false;  ///< drawn with more sets than are kept
    std::vector<DrawnSets> sets;

    /// Takes in what some of its content is drawn with.
    void Add(DrawnSets one);

    /// Whether a reference drawn in `state` replaces something that the definition says of itself.
    bool IsReplacedBy(const SvgDrawState& state) const;
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
