// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/element_attributes.h"

#include <initializer_list>

namespace {

using enum AttributeName;

constexpr std::uint64_t Set(std::initializer_list<AttributeName> names) {
    std::uint64_t set = 0;
    for (const AttributeName name : names) set |= std::uint64_t{1} << static_cast<unsigned>(name);
    return set;
}

constexpr std::uint64_t kFills = Set({kFill, kFillOpacity, kFillRule});
constexpr std::uint64_t kStrokes =
    Set({kStroke, kStrokeDasharray, kStrokeLinecap, kStrokeLinejoin, kStrokeOpacity, kStrokeWidth});
constexpr std::uint64_t kVisible = Set({kDisplay, kVisibility});
constexpr std::uint64_t kTexts =
    Set({kFontFamily, kFontSize, kFontWeight, kLetterSpacing, kTextAnchor, kTextVersion, kWritingMode});
constexpr std::uint64_t kMarkers = Set({kMarker, kMarkerStart, kMarkerMid, kMarkerEnd});
constexpr std::uint64_t kPaints = kFills | kStrokes | Set({kColor, kOpacity, kStyle});

// Inherited properties and the identifier.
constexpr std::uint64_t kContainer = kPaints | kVisible | kTexts | kMarkers | Set({kId});
// Definitions are painted by their references: of their own paint, only whether there is any has an effect.
constexpr std::uint64_t kDefinition = kVisible | kMarkers | Set({kFill, kId, kStroke, kStyle});
constexpr std::uint64_t kShape = kPaints | kVisible | Set({kId, kTransform});
// Elements that are always stroked and never filled ignore visibility.
constexpr std::uint64_t kOpenLine = kStrokes | kMarkers | Set({kColor, kId, kOpacity, kStyle, kTransform});
constexpr std::uint64_t kBox = Set({kX, kY, kWidth, kHeight});

}  // namespace

std::uint64_t GetEffectiveAttributes(ElementName element, SvgPlace place) {
    constexpr std::uint64_t kPageAttributes = kContainer | Set({kHeight, kViewBox, kWidth});
    switch (element) {
        case ElementName::kA:
            return kContainer | Set({kPatternTransform, kTransform, kXlinkHref, kXlinkShow});
        case ElementName::kCircle: return kShape | Set({kCx, kCy, kR});
        case ElementName::kDefs: return kDefinition & ~Set({kId});
        case ElementName::kEllipse: return kShape | Set({kCx, kCy, kRx, kRy});
        case ElementName::kG: return kContainer | Set({kPatternTransform, kTransform});
        case ElementName::kImage: return kBox | Set({kId, kTransform, kXlinkHref});
        case ElementName::kLine: return (kOpenLine & ~Set({kMarkerMid})) | Set({kX1, kX2, kY1, kY2});
        case ElementName::kMarker: return kDefinition | Set({kMarkerHeight, kMarkerWidth, kRefX, kRefY});
        case ElementName::kPath: return kShape | kMarkers | Set({kD});
        case ElementName::kPattern: return Set({kId});
        case ElementName::kPolygon: return kShape | kMarkers | Set({kPoints});
        case ElementName::kPolyline: return kOpenLine | Set({kPoints});
        case ElementName::kRect: return kShape | kBox;
        case ElementName::kSvg: return place == SvgPlace::kPage ? kPageAttributes : kPageAttributes | kBox;
        case ElementName::kSymbol: return kDefinition | Set({kViewBox});
        case ElementName::kText: return kShape | kTexts | Set({kDx, kDy, kViewBox, kX, kY});
        case ElementName::kUse:
            return kPaints | kTexts | kBox | Set({kId, kPatternTransform, kTransform, kXlinkHref});
        case ElementName::kUnknown:
        case ElementName::kDesc:
        case ElementName::kTitle: break;
    }
    return 0;
}
