// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/namespace.h"

namespace orvprint {

// The element and attribute names that drawings are read by. A document's names are numbered once, when it
// is parsed; from then on a name is compared as a number, and an element's attributes are a set of bits.

/// Known element names; kUnknown stands for every other one, and for nodes that are no elements.
enum class ElementName : std::uint8_t {
    kUnknown,
    kA,
    kCircle,
    kDefs,
    kDesc,
    kEllipse,
    kG,
    kImage,
    kLine,
    kMarker,
    kPath,
    kPattern,
    kPolygon,
    kPolyline,
    kRect,
    kSvg,
    kSymbol,
    kText,
    kTitle,
    kUse
};

/// Known attribute names. kCount is no name, but their number: at most 64, so that a set of them is one word.
enum class AttributeName : std::uint8_t {
    kAlignmentBaseline,
    kColor,
    kCx,
    kCy,
    kD,
    kDisplay,
    kDx,
    kDy,
    kFill,
    kFillOpacity,
    kFillRule,
    kFontFamily,
    kFontSize,
    kFontStyle,
    kFontWeight,
    kHeight,
    kId,
    kLengthAdjust,
    kLetterSpacing,
    kMarker,
    kMarkerEnd,
    kMarkerHeight,
    kMarkerMid,
    kMarkerStart,
    kMarkerWidth,
    kOpacity,
    kPathLength,
    kPatternTransform,
    kPoints,
    kR,
    kRefX,
    kRefY,
    kRotate,
    kRx,
    kRy,
    kStroke,
    kStrokeDasharray,
    kStrokeLinecap,
    kStrokeLinejoin,
    kStrokeOpacity,
    kStrokeWidth,
    kStyle,
    kTextAnchor,
    kTextLength,
    kTextVersion,  // "tlv:text-version"
    kTransform,
    kViewBox,
    kVisibility,
    kWidth,
    kWritingMode,
    kX,
    kX1,
    kX2,
    kXlinkHref,
    kXlinkShow,
    kY,
    kY1,
    kY2,
    kCount
};
static_assert(static_cast<int>(AttributeName::kCount) <= 64);

/// Number of an element name. Exact: case counts, a prefix is part of the name.
ORV_PLATFORM_EXPORT ElementName FindElementName(std::string_view text);
/// Number of an attribute name, nothing when it is not among the known ones. Exact, as for elements.
ORV_PLATFORM_EXPORT std::optional<AttributeName> FindAttributeName(std::string_view text);

/// The name as documents write it; empty for kUnknown. The text lives as long as the program.
ORV_PLATFORM_EXPORT std::string_view GetNameText(ElementName name);
/// The same for an attribute.
ORV_PLATFORM_EXPORT std::string_view GetNameText(AttributeName name);

}  // namespace orvprint
