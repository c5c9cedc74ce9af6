// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/namespace.h"

namespace orvprint {

// The element and attribute names known to the interpreters of drawings. The parser converts names to numbers
// once; afterwards names are compared as numbers, and an element's attributes are a bit set.

/// Known element names. kUnknown means any other name, or a node that is not an element.
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

/// Known attribute names. kCount is their number, at most 64 so that a set fits into one word.
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

/// Number of an element name. The comparison is case-sensitive and includes the prefix.
ORV_PLATFORM_EXPORT ElementName FindElementName(std::string_view text);
/// Number of an attribute name, compared likewise; nullopt when it is not known.
ORV_PLATFORM_EXPORT std::optional<AttributeName> FindAttributeName(std::string_view text);

/// The name as written in documents; empty for kUnknown. Static storage.
ORV_PLATFORM_EXPORT std::string_view GetNameText(ElementName name);
/// The name of an attribute, likewise.
ORV_PLATFORM_EXPORT std::string_view GetNameText(AttributeName name);

}  // namespace orvprint
